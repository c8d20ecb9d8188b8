# SPDX-License-Identifier: MIT
# Extracts the commands of a document, Markdown or (names ending in .1.in) a manual page, into files in `folder`:
#
#   001.sh, 002.sh ...   the commands in document order; the first line is a comment with kind and line number
#   001.text ...         the output that the document shows for it: a ```text block after the ```sh block
#
# The kinds: "block" for an ```sh block or, in a manual page, a literal block (.EX or .nf) of the section EXAMPLES;
# "inline" for text in backticks that begins with the name of a program and has arguments, or with a script's path.
BEGIN {
  programs = "velmarcon|velmarcon-batch|velmarcon-calibrate|exiftool|unprocessed_raw|dcraw_emu|cmake|ctest|apt|apt-get|sudo|dpkg|man|git|" \
    "mkdir|cp|mv|rm|cd|ls|grep|cat|tar|unzip|brew"
  command = "^((" programs ") .|(\\./)?(scripts|docs)/[a-z_0-9-]+( |$)|\\./[a-z][a-z-]*$)"
}
function fail(text) {
  print FILENAME ":" FNR ": " text > "/dev/stderr"
  failed = 1
  exit 1
}
function begin_item(kind, line) {
  item = sprintf("%s/%03d", folder, ++items)
  print "# " kind " " line > (item ".sh")
}
function end_item() {
  close(item ".sh")
}
# Extracts the commands in backticks of a paragraph or a table row.
function scan(text, line, span) {
  gsub(/\\\|/, "|", text)
  while (match(text, /`[^`]+`/)) {
    span = substr(text, RSTART + 1, RLENGTH - 2)
    text = substr(text, RSTART + RLENGTH)
    if (span ~ command && span !~ /^docs\/[a-z-]*\.md/) {
      begin_item("inline", line)
      print span > (item ".sh")
      end_item()
      output_fits = 0
    }
  }
}
function end_paragraph() {
  if (paragraph != "") scan(paragraph, paragraph_line)
  paragraph = ""
}

FILENAME ~ /\.1(\.in)?$/ {
  if ($1 == ".SH") examples = ($2 == "EXAMPLES")
  else if (examples && ($1 == ".EX" || $1 == ".nf")) {
    begin_item("block", FNR)
    literal = 1
  } else if (literal && ($1 == ".EE" || $1 == ".fi")) {
    end_item()
    literal = 0
  } else if (literal) {
    sub(/^\.B /, "")
    if (/^\./) next
    gsub(/\\-/, "-")
    gsub(/\\\(aq/, "'")
    gsub(/\\(ti|\(ti)/, "~")
    gsub(/\\&/, "")
    gsub(/\\e/, "\\")
    gsub(/\\f./, "")
    print > (item ".sh")
  }
  next
}
/^ *```/ && fence == "" {
  end_paragraph()
  fence = $0
  gsub(/[ `]/, "", fence)
  if (fence == "sh") begin_item("block", FNR)
  else if (fence == "text") {
    if (!output_fits) fail("output without a block of commands before it")
    printf "" > (item ".text")
  } else if (fence == "") fence = "plain"
  output_fits = (fence == "sh")
  next
}
/^ *```/ {
  if (fence == "sh") end_item()
  else if (fence == "text") close(item ".text")
  fence = ""
  next
}
fence == "sh" { print > (item ".sh") }
fence == "text" { print > (item ".text") }
fence != "" { next }
/^ *$/ {
  end_paragraph()
  next
}
/^ *\|/ {
  end_paragraph()
  scan($0, FNR)
  next
}
{
  if (paragraph == "") paragraph_line = FNR
  output_fits = 0
  paragraph = paragraph $0 " "
}
END {
  if (failed) exit 1
  end_paragraph()
  if (fence != "" || literal) fail("a block is not closed")
}
