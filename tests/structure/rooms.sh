# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Shared by the checks of the structure of the sources: the folders of the program, and which may include which.

# Every folder of the program, from the top down, with those whose headers it may include.
# shellcheck disable=SC2034  # read by the scripts that source this
rooms=(app dng sensor input exif errors tiff system base)

# The folders of programs outside that order.
# shellcheck disable=SC2034  # read by the scripts that source this
tools=(calibrate packaging)

declare -A may_include=(
  [app]="dng sensor input exif errors tiff system base"
  [dng]="sensor input exif errors tiff system base"
  [sensor]="input exif errors tiff system base"
  [input]="exif errors tiff system base"
  [exif]="tiff system base"
  [errors]="base"
  [tiff]="base"
  [system]="base"
  [base]=""
  # Tools that include the program.
  [packaging]="app exif errors system base"
  [calibrate]="packaging app sensor input exif errors system base"
  [batch]="packaging app dng sensor input exif errors tiff system base"
  # Next to the program: camera files for tests are made without the code that reads and writes them.
  [samples]="tiff system base"
)

# includes SOURCE FOLDER...: prints a line FILE:LINE:HEADER for each #include of the project's own headers in these
# folders.
includes() {
  local source=$1
  shift
  (cd -- "$source" && grep -rnoE --include='*.h' --include='*.cpp' '^ *# *include +"[^"]+"' -- "$@") |
    sed -E 's/^([^:]*:[0-9]+:).*"([^"]+)"$/\1\2/'
}
