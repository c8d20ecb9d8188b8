# SPDX-License-Identifier: MIT
# Prints the rows that docs/dng-format.md has for one kind of file, one line per row, in the format of written_tags.awk.
# The variable `given` lists the conditions that hold for this file, words of the column "When" with commas around each;
# `kind` is "converted" or "repaired". A value or a count that may vary is "*".
BEGIN {
  split("-p,-b,-c,-l,lens,dark levels removed,no -p,no -c", list, ",")
  for (i in list) known[list[i]] = 1
}
function trim(text) {
  gsub(/^ +| +$/, "", text)
  return text
}
function fail(text) {
  print "dng-format.md: " text > "/dev/stderr"
  exit 1
}
function holds(when) {
  gsub(/`/, "", when)
  if (when == "") return 1
  if (!(when in known)) fail("no file is made for the condition \"" when "\"")
  if (when ~ /^no /) return !index(given, "," substr(when, 4) ",")
  return index(given, "," when ",") > 0
}
/^#/ {
  title = $0
  sub(/^#+ */, "", title)
  section_kind = title ~ /^Repaired/ ? "repaired" : "converted"
  directory = ""
  if (title == "Raw image") directory = index(given, ",-p,") ? "SubIFD" : "IFD0"
  else if (title ~ /SubIFD/) directory = "SubIFD"
  else if (title ~ /EXIF/) directory = "ExifIFD"
  else if (title ~ /IFD0|Preview/) directory = "IFD0"
}
/^\| *[0-9]+ *\|/ {
  cells = split($0, cell, "|")
  if (cells != 9 || directory == "") fail("not a row of seven cells in a known table: " $0)
  if (section_kind != kind || !holds(trim(cell[8]))) next
  value = "*"
  if (match(cell[6], /`[^`]*`/) && trim(cell[6]) ~ /^`/) value = substr(cell[6], RSTART + 1, RLENGTH - 2)
  else if (trim(cell[6]) == "empty") value = ""
  count = trim(cell[5]) == "n" ? "*" : trim(cell[5])
  print directory "\t" trim(cell[2]) "\t" trim(cell[4]) "\t" count "\t" value
}
