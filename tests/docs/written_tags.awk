# SPDX-License-Identifier: MIT
# Prints the tags of a DNG from the output of exiftool -n -v4: one line per tag, with tabs between IFD (IFD0, SubIFD or
# ExifIFD), number, type, count and value. Rationals are printed as stored. The maker note's own entries are left out.
BEGIN {
  split("int8u BYTE string ASCII int16u SHORT int32u LONG rational64u RATIONAL undef UNDEFINED rational64s SRATIONAL", names, " ")
  for (i = 1; i in names; i += 2) type[names[i]] = names[i + 1]
  digits = "0123456789abcdef"
}
function number(hex, i, n) {
  for (i = 3; i <= length(hex); ++i) n = 16 * n + index(digits, substr(hex, i, 1)) - 1
  return n
}
# The depth of a line is the number of bars before it; the entries of an IFD are one level deeper than its title.
match($0, /^ *(\| )*/) {
  bars = substr($0, 1, RLENGTH)
  rest = substr($0, RLENGTH + 1)
  depth = gsub(/\|/, "", bars)
}
rest ~ /^\+ \[.* directory with / {
  split(rest, words, " ")
  directory[depth + 1] = substr(words[2], 2)
}
rest ~ /^[0-9]+\) / {
  value = rest
  if (!sub(/^[^=]* = /, "", value)) value = ""
  if (match(value, /\([-0-9]+\/[-0-9/ ]*\)$/)) value = substr(value, RSTART + 1, RLENGTH - 2)
}
rest ~ /^ *- Tag 0x/ && directory[depth] != "MakerNotes" {
  match(rest, /0x[0-9a-f]+/)
  tag = number(substr(rest, RSTART, RLENGTH))
  match(rest, /[a-z0-9]+\[[0-9]+\]/)
  split(substr(rest, RSTART, RLENGTH), form, /[][]/)
  print directory[depth] "\t" tag "\t" type[form[1]] "\t" form[2] "\t" value
}
