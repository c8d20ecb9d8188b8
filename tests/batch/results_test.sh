# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What velmarcon-batch takes for success, and what it tells.
# shellcheck disable=SC2154  # run_test sets the variables

ARawFileWithoutJpegFailsWithTheReason() {
  pair in/L1
  pair in/L2
  rm in/L2.JPG
  batch -o out in
  expect_status 1
  expect_summary 2 1 0 1
  expect_line "Failed: $scratch/in/L2.RAW: L2.JPG: Error #0010: Unable to find JPG file."
  expect_files out L1.DNG
}

EveryFailureIsNamed() {
  pair in/L1
  pair in/L2
  head -c 1000 "$card/L1000001.RAW" >in/short && mv -f in/short in/L2.RAW
  pair in/L3
  head -c 1000 "$card/L1000001.JPG" >in/short && mv -f in/short in/L3.JPG
  camera_dng in/L4
  printf 'XX' | dd of=in/L4.DNG bs=1 seek=8 conv=notrunc 2>/dev/null
  batch -j 1 -o out in
  expect_status 1
  expect_summary 4 1 0 3
  expect_line "Failed: $scratch/in/L2.RAW: Error #0008: Damaged RAW file."
  expect_line "Failed: $scratch/in/L3.RAW: L3.JPG: Error #0009: Damaged EXIF in JPG."
  expect_text "Failed: $scratch/in/L4.DNG: Error #00"
  expect_files out L1.DNG
}

ADngThatIsThereIsKept() {
  pair in/L1
  camera_dng in/L2
  batch -o out in
  ln out/L1.DNG out/L2.DNG .
  batch -o out in
  expect_status 0
  expect_summary 2 0 2 0
  [[ out/L1.DNG -ef L1.DNG && out/L2.DNG -ef L2.DNG ]] || fail "replaced"
  batch -o out in -- -v -refresh
  expect_status 0
  expect_summary 2 2 0 0
  [[ ! out/L1.DNG -ef L1.DNG && ! out/L2.DNG -ef L2.DNG ]] || fail "not replaced"
  expect_same out/L1.DNG L1.DNG
}

ADngThatWasCutIsNotTakenForOne() {
  pair in/L1
  camera_dng in/L2
  batch -o whole in -- -p
  local name size length lengths
  for name in L1 L2; do
    size=$(wc -c <"whole/$name.DNG")
    lengths=(0 1 7 9 100 2000 3000 100000 $((size / 2)) $((size - 1)))
    for length in "${lengths[@]}"; do
      mkdir -p "cut/$length" "out/$length"
      ln -f in/$name.* "cut/$length"
      head -c "$length" "whole/$name.DNG" >"out/$length/$name.DNG"
    done
    batch -o out cut -- -p
    expect_status 1
    expect_summary 10 0 0 10
    for length in "${lengths[@]}"; do
      expect_text "$name.DNG is there, but is "
      [[ $(wc -c <"out/$length/$name.DNG") -eq $length ]] || fail "the cut DNG was replaced"
    done
    batch -o out cut -- -p -r
    expect_status 0
    expect_same "out/100/$name.DNG" "whole/$name.DNG"
    rm -r cut out
  done
}

AnyOtherFileInItsPlaceIsNotTakenForTheDng() {
  pair in/L1
  mkdir -p out
  head -c 30000000 /dev/zero >out/L1.DNG
  batch -o out in
  expect_status 1
  expect_text 'L1.DNG is there, but is not a DNG; delete it, or use -r'
  rm out/L1.DNG
  mkdir out/L1.DNG
  local options
  for options in '' '-- -r'; do
    # shellcheck disable=SC2086  # words
    batch -o out in $options
    expect_status 1
    expect_line "Failed: $scratch/in/L1.RAW: L1.DNG is a folder"
  done
  rmdir out/L1.DNG
  mkfifo out/L1.DNG
  batch -o out in
  expect_status 1
  batch -o out in -- -r
  expect_status 1
}

ADngOfTheCamerasOwnIsNotTakenForThatOfAPair() {
  pair in/L1
  camera_dng in/L1
  batch in -- -r
  expect_status 1
  expect_summary 2 0 0 2
  expect_same in/L1.DNG "$card/L1000004.DNG"
  expect_text "in/L1.RAW: L1.DNG, which is there, is a camera DNG; use another output folder"
  batch -o out in
  expect_status 1
  expect_summary 2 1 0 1
  expect_text 'in/L1.DNG: its DNG would have the same name as that of L1.RAW'
  [[ $(od -An -tu2 -j30 -N2 out/L1.DNG) -eq 3968 ]] || fail "not the pair's DNG"
}

ADngOfTheCamerasOwnIsReplacedOnlyOnRequest() {
  camera_dng in/L1
  batch in
  expect_status 1
  expect_text "a camera DNG is repaired into another folder (--output), or replaced with -r"
  expect_same in/L1.DNG "$card/L1000004.DNG"
  batch in -- -r
  expect_status 0
  expect_summary 1 1 0 0
  [[ $(wc -c <in/L1.DNG) -gt $camera_dng_bytes ]] || fail "not repaired"
}

AFullDiskIsToldAndLeavesNoHalf() {
  pair in/L1
  pair in/L2
  (ulimit -f 10000 && batch -o out in && expect_status 1 && expect_summary 2 0 0 2 &&
    expect_text 'DNG not written: File too large')
  [[ -z $(ls -A out) ]] || fail "left: $(ls -A out)"
  batch -o out in
  expect_status 0
}

ARemarkStandsInTheReport() {
  pair in/L1
  batch -o out in -- -s
  expect_status 0
  expect_text '1 with a remark: see '
  grep -qx "converted: $scratch/in/L1.RAW: Error #0014: No Sensor database found." "$(state_folder)/report" ||
    fail "report: $(cat "$(state_folder)/report")"
}

AShortRawFileIsNoSuccessUnlessAccepted() {
  pair in/L1
  pair in/L2
  head -c 20000000 "$card/L1000001.RAW" >short && mv -f short in/L2.RAW
  local damage='the RAW file has only 20000000 of 21041100 bytes, and the picture ends early'
  batch -o out in
  expect_status 1
  expect_line "Damaged: $scratch/in/L2.RAW: $damage"
  expect_line '2 pictures: 2 converted, 0 already there, 0 failed; 1 of these is damaged'
  # It stays so.
  batch -o out in
  expect_status 1
  expect_line "Damaged: $scratch/in/L2.RAW: $damage"
  expect_line '2 pictures: 0 converted, 2 already there, 0 failed; 1 of these is damaged'
  batch --accept-damaged -o out in -- -r
  expect_status 0
  expect_summary 2 2 0 0
  expect_text '1 with a remark: see '
  expect_line "Remark: $scratch/in/L2.RAW: $damage"
  grep -qx "converted: $scratch/in/L2.RAW: $damage" "$(state_folder)/report" ||
    fail "report: $(cat "$(state_folder)/report")"
}

AShortDarkFrameThatIsUsedIsDamage() {
  pair in/L1
  head -c 20000000 "$card/L1000001.RAW" >in/L1.BIA
  batch -o out in
  expect_status 0
  batch -o dark in -- -b
  expect_status 1
  local damage='the dark frame has only 20000000 of 21041100 bytes, and the picture is corrected in part only'
  expect_line "Damaged: $scratch/in/L1.RAW: $damage"
  batch --accept-damaged -o accepted in -- -b
  expect_status 0
  expect_line "Remark: $scratch/in/L1.RAW: $damage"
}

OfManyRemarksTheFirstTenAreTold() {
  local number
  for number in {10..21}; do
    pair "in/L$number"
  done
  batch -o out in -- -s
  expect_status 0
  expect_text '12 with a remark: see '
  [[ $(grep -c '^Remark: .*: Error #0014: No Sensor database found.$' printed) -eq 10 ]] || fail "not ten"
  expect_line '... and 2 more'
}

NoPictureAtAllIsNoSuccess() {
  mkdir in
  cp "$card/L1000001.RAW" in/small.raw
  batch -o out in
  expect_status 1
  expect_text 'no picture found'
}

TheReportNamesEveryPicture() {
  many_pairs in 5
  batch -j 2 -o out in
  expect_text "report: $(state_folder)/report"
  [[ -f $(state_folder)/joblog ]] || fail "no log of GNU parallel"
  local i
  for i in 1 2 3 4 5; do
    grep -qx "converted: $scratch/in/L000000$i.RAW" "$(state_folder)/report" || fail "not in the report: $i"
  done
}

TheStateCanBeKeptElsewhere() {
  pair in/L1
  batch --state kept -o out in
  expect_status 0
  [[ -f $(echo kept/*/report) && ! -e $HOME/.local ]] || fail "not there"
  unset HOME
  batch --state kept -o out in
  expect_status 0
}

UsersSettingsOfParallelDoNotMatter() {
  many_pairs in 4
  mkdir "$HOME/.parallel"
  echo '--dry-run --colsep 0 -j 0' >"$HOME/.parallel/config"
  PARALLEL='--dryrun --tag' SHELL=/bin/false batch -j 2 -o out in
  expect_status 0
  [[ $(find out -name '*.DNG' | wc -l) -eq 4 ]] || fail "no DNGs"
}

WithoutParallelOnePictureIsDoneAfterTheOther() {
  many_pairs in 4
  mkdir bin
  PATH=$scratch/bin batch -j 2 -o out in
  expect_status 0
  expect_line 'One picture after the other: GNU parallel is not installed'
  expect_summary 4 4 0 0
  # The other program of that name.
  printf '#!/bin/sh\necho parallel from moreutils\n' >bin/parallel
  chmod +x bin/parallel
  PATH=$scratch/bin:/usr/bin:/bin batch -j 2 -o out2 in
  expect_status 0
  expect_line 'One picture after the other: GNU parallel is not installed'
  expect_summary 4 4 0 0
}

ProgressIsForTerminals() {
  need_terminal
  pair in/L1
  batch -o out in
  ! grep -q '1 of 1' printed || fail "progress in a file"
  script -qec "$(printf '%q ' "$batch_program" -o out2 in)" typescript </dev/null >/dev/null || fail "status $?"
  grep -q '1 of 1, 0 failed' typescript || fail "no progress: $(cat typescript)"
}

# fake_desktop: a notify-send that keeps what it was told, one argument a line, and ends with the status $1.
fake_desktop() {
  mkdir -p bin
  printf '#!/bin/sh\nprintf "%%s\\n" "$@" >>"%s/notified"\nexit %s\n' "$scratch" "$1" >bin/notify-send
  chmod +x bin/notify-send
}

TheDesktopIsToldHowItEnded() {
  pair in/L1
  pair in/L2
  rm in/L2.JPG
  fake_desktop 0
  PATH=$scratch/bin:$PATH batch -o out in
  [[ ! -e notified ]] || fail "told without --notify"
  PATH=$scratch/bin:$PATH batch --notify -o out in
  expect_status 1
  [[ $(<notified) == $'velmarcon-batch\nEnded: 2 pictures, 1 failed' ]] || fail "told: $(<notified)"
  rm notified in/L2.RAW
  PATH=$scratch/bin:$PATH batch --notify -o out in
  expect_status 0
  [[ $(<notified) == $'velmarcon-batch\nDone: 1 picture, 0 failed' ]] || fail "told: $(<notified)"
}

ADesktopThatCannotBeToldIsNoFailure() {
  pair in/L1
  fake_desktop 1
  PATH=$scratch/bin:$PATH batch --notify -o out in
  expect_status 0
  mkdir empty
  PATH=$scratch/empty batch -j 1 --notify -o out in
  expect_status 0
  expect_summary 1 0 1 0
}
