# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The command line of velmarcon-batch.
# shellcheck disable=SC2154  # run_test sets the variables
# shellcheck disable=SC2164  # it also makes a failing cd end the test

# refused TEXT ARGUMENT...: status 2, the text is printed, and nothing is done.
refused() {
  local text=$1
  shift
  batch "$@"
  expect_status 2
  expect_text "$text"
  [[ ! -e out && ! -e $HOME/.local ]] || fail "something was done: $*"
  expect_files in L1.RAW L1.JPG
}

RefusesToDeleteOriginals() {
  pair in/L1
  refused 'originals are deleted by hand, and only after velmarcon-batch has ended with status 0' --delete-originals in
  refused 'originals are deleted by hand' in --delete
}

RefusesADarkReference() {
  pair in/L1
  refused '-sd makes the database of one camera from one dark exposure' -o out in -- -sd
  refused '-sd makes' -o out in -- -v -sdx
}

RefusesInputAndOutputForVelmarcon() {
  pair in/L1
  refused 'the input and the output of each velmarcon are given to it from here' -o out in -- -i x
  refused 'the input and the output' -o out in -- -input x
  refused 'the input and the output' -o out in -- -r -o x
}

RefusesWhatVelmarconWouldIgnore() {
  pair in/L1
  refused "'in2' after -- is no option, nor the value of one" in -- -r in2
  refused "'200' after --" in -- -b 100 200
}

RefusesWhatVelmarconWouldReadOtherwise() {
  pair in/L1
  refused 'velmarcon: -vb: read as -v, the rest is ignored; write -v -b' -o out in -- -vb
  refused 'velmarcon would misread the options after --:' -n -o out in -- -vb
  refused 'velmarcon: -x: ignored: there is no such option' -o out in -- -x
  refused 'velmarcon: -b 70000: read as black level 4464' -o out in -- -b 70000
  use_databases
  batch -o out in -- -l 1
  expect_status 2
  expect_text 'velmarcon: -l 1: this code adds no lens data: it must have six digits, each 0 or 1'
  [[ ! -e out && ! -e $HOME/.local/state ]] || fail "something was done"
  batch -o out in -- -v -b
  expect_status 0
  expect_files out L1.DNG
}

RefusesWrongUsage() {
  pair in/L1
  refused 'no folder given'
  refused 'no folder given' -- -r
  refused 'unknown option -r' in -r
  refused 'unknown option --frsh' in --frsh
  refused 'nowhere is neither a folder' in nowhere
  refused 'in/../notes.txt is neither a folder nor a file of a picture' in/../notes.txt
  refused '-o needs a value' in -o
  refused '--output needs a value' in --output=
  local jobs
  for jobs in 0 -1 x 1.5 50% ''; do
    refused '--jobs needs a ' "--jobs=$jobs" in
  done
}

RefusesWhatDoesNotGoTogether() {
  pair in/L1
  refused '--rename and --hosts do not go together: another machine cannot see which names are free here' \
    --rename --hosts : -o out in
  refused '--verify reads what is here: it goes neither with --no-verify nor with --hosts' --verify --hosts : in
}

HelpAndVersion() {
  batch --help
  expect_status 0
  expect_line 'Usage: velmarcon-batch [OPTION...] FOLDER... [-- VELMARCON-OPTION...]'
  batch --version
  expect_status 0
  [[ $(<printed) =~ ^velmarcon-batch\ [0-9]+\.[0-9]+$ ]] || fail "version"
}

EveryWayToWriteAnOption() {
  pair in/L1
  local options
  for options in '-o out' '-oout' '--output out' '--output=out'; do
    # shellcheck disable=SC2086
    batch $options in -j1
    expect_status 0
    expect_files out L1.DNG
    rm -r out
  done
}

OptionsReachVelmarcon() {
  pair in/L1
  batch -o out in -- -b 100 -p -c
  expect_status 0
  mkdir direct
  "$program" -i in/L1.RAW -o direct -b 100 -p -c >/dev/null
  expect_same out/L1.DNG direct/L1.DNG
}

DatabasesAreThoseOfTheInstalledCommand() {
  pair in/L1
  batch -o out in -- -l
  expect_status 1
  expect_text 'Error #0012: Missing lens database file lensdb.ini.'
  use_databases
  batch -o out in -- -l
  expect_status 0
  mkdir direct
  ln "$program" "$card/lensdb.ini" .
  ./velmarcon -i in/L1.RAW -o direct -l >/dev/null
  expect_same out/L1.DNG direct/L1.DNG
}

DarkFramesAreUsed() {
  pair in/L1
  ln "$card/L1000002.RAW" in/L1.BIA
  batch -o out in -- -b
  mkdir direct
  "$program" -i in/L1.RAW -o direct -b >/dev/null
  expect_same out/L1.DNG direct/L1.DNG
}

ADryRunListsAndDoesNothing() {
  pair in/L1
  pair in/L2
  camera_dng in/L3
  mkdir out
  : >out/L2.DNG
  batch -n -o out in
  expect_status 0
  expect_line "convert: $scratch/in/L1.RAW -> $scratch/out/L1.DNG"
  expect_line "keep: $scratch/in/L2.RAW -> $scratch/out/L2.DNG"
  expect_line "convert: $scratch/in/L3.DNG -> $scratch/out/L3.DNG"
  expect_line '3 pictures'
  expect_files out L2.DNG
  batch --dry-run -o out in -- -r
  expect_line "refresh: $scratch/in/L2.RAW -> $scratch/out/L2.DNG"
  batch --dry-run -o new/out in
  expect_status 0
  batch --dry-run in
  expect_status 1
  expect_line "refuse: $scratch/in/L3.DNG -> $scratch/in/L3.DNG"
  [[ ! -e new && ! -e $HOME/.local ]] || fail "something was made"
  expect_files in L1.RAW L1.JPG L2.RAW L2.JPG L3.DNG
  mkdir none
  batch --dry-run none
  expect_status 1
  expect_text 'no picture found'
}

ADryRunEndsAsTheRunWouldForWhatItSees() {
  pair in/L1
  : >in/L3.DNG
  batch -n -o out in
  expect_status 1
  expect_line "Too short for a camera DNG: $scratch/in/L3.DNG"
  batch -n --accept-damaged -o out in
  expect_status 0
  printf 'in/L1.RAW\0in/L2.RAW\0' >list
  rm in/L3.DNG
  batch -n --from0 list -o out in
  expect_status 1
}

QuietTellsOfFailuresOnly() {
  pair in/L1
  batch -q -o out in
  expect_status 0
  [[ ! -s printed ]] || fail "not quiet"
  rm in/L1.JPG out/L1.DNG
  batch --quiet -o out in
  expect_status 1
  [[ $(<printed) == "Failed: $scratch/in/L1.RAW: L1.JPG: Error #0010: Unable to find JPG file." ]] || fail "not just it"
}

AnOutputFolderThatCannotBeMade() {
  pair in/L1
  : >file
  batch -o file/out in
  expect_status 3
  expect_line 'velmarcon-batch: the output folder file/out cannot be made: Not a directory'
}
