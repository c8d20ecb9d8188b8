# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What velmarcon-batch takes for a picture's own DNG, and what it proves of it.
# shellcheck disable=SC2154  # run_test sets the variables

# replaced FILE FROM: the file becomes a copy of another one; the names that are linked to it keep theirs.
replaced() {
  cp -- "$2" "$1.new"
  mv -f -- "$1.new" "$1"
}

ANewPictureIsNotTakenForAnOldOneOfItsName() {
  pair first/L1 1
  pair second/L1 2
  batch -o out first
  expect_status 0
  ln out/L1.DNG old.DNG
  batch -o out second
  expect_status 1
  expect_summary 1 0 0 1
  grep -qE "^Failed: $scratch/second/L1.RAW: L1.DNG there is another picture \([0-9-]+ [0-9:]+, camera [0-9]+\); --rename gives this one another name$" printed ||
    fail "not told"
  batch -o out second -- -r
  expect_status 1
  [[ out/L1.DNG -ef old.DNG ]] || fail "another picture's DNG was replaced"
  # The first card again, after its state is gone.
  rm -r "$HOME/.local"
  batch -o out first
  expect_status 0
  expect_summary 1 0 1 0
}

APictureMayBeRenamed() {
  pair first/L1 1
  pair second/L1 2
  batch -o out first
  batch --rename -o out second
  expect_status 0
  expect_summary 1 1 0 0
  expect_files out L1.DNG L1-2.DNG
  mkdir direct
  "$program" -i second/L1.RAW -o direct >/dev/null
  expect_same out/L1-2.DNG direct/L1.DNG
  batch --rename -o out second
  expect_status 0
  expect_summary 1 0 1 0
  expect_files out L1.DNG L1-2.DNG
}

ARenamedPictureIsToldAndNotMadeAgain() {
  pair first/L1 1
  pair second/L1 2
  batch -o out first
  batch -n -o out second
  expect_status 1
  expect_line "fail: $scratch/second/L1.RAW -> $scratch/out/L1.DNG (another picture; --rename gives this one another name)"
  batch -n --rename -o out second
  expect_line "convert: $scratch/second/L1.RAW -> $scratch/out/L1-2.DNG"
  batch --rename -o out second
  expect_line "Renamed: $scratch/second/L1.RAW -> L1-2.DNG"
  grep -qxF "renamed: $scratch/second/L1.RAW -> L1-2.DNG" "$(state_folder)/report" || fail "not in the report"
  batch -n --rename -o out second
  expect_line "keep: $scratch/second/L1.RAW -> $scratch/out/L1-2.DNG"
  # Names before its own may become free.
  mv out/L1-2.DNG out/L1-5.DNG
  batch --rename -o out second
  expect_summary 1 0 1 0
  rm out/L1.DNG
  batch -n --rename -o out second
  expect_line "keep: $scratch/second/L1.RAW -> $scratch/out/L1-5.DNG"
  batch --rename -o out second
  expect_status 0
  expect_summary 1 0 1 0
  expect_files out L1-5.DNG
}

ADngOfAHalfCopiedRawFileIsFoundOut() {
  pair in/L1
  head -c 15000000 "$card/L1000001.RAW" >half
  replaced in/L1.RAW half
  batch --accept-damaged -o out in
  expect_status 0
  replaced in/L1.RAW "$card/L1000001.RAW"
  batch -o out in
  expect_status 1
  expect_text "L1.DNG is there, but does not match its RAW file"
  expect_text '; if the RAW file is the good one, delete the DNG and run this again'
  batch -o out in -- -r
  expect_status 0
  "$program" -i in/L1.RAW -o . >/dev/null
  expect_same out/L1.DNG L1.DNG
}

AWholeDngIsNotReplacedByThatOfADamagedRawFile() {
  pair in/L1
  batch -o out in
  ln out/L1.DNG whole.DNG
  head -c 15000000 "$card/L1000001.RAW" >half
  replaced in/L1.RAW half
  local options
  for options in '' '-- -r'; do
    # shellcheck disable=SC2086  # words
    batch -o out in $options
    expect_status 1
    expect_line "Failed: $scratch/in/L1.RAW: L1.RAW has only 15000000 of 21041100 bytes; the DNG is kept"
    [[ out/L1.DNG -ef whole.DNG ]] || fail "replaced"
  done
  batch --accept-damaged -o out in -- -r
  expect_status 0
  expect_summary 1 1 0 0
  cmp -s out/L1.DNG whole.DNG && fail "not replaced"
  :
}

ADngWhoseRawFileIsNewerIsComparedWithIt() {
  pair in/L1
  batch -o out in
  # The same again, copied later.
  replaced in/L1.RAW "$card/L1000001.RAW"
  touch -d 'now + 1 hour' in/L1.RAW
  batch -o out in
  expect_status 0
  expect_summary 1 0 1 0
  # Another one, as long.
  replaced in/L1.RAW "$card/L1000002.RAW"
  touch -d 'now + 2 hours' in/L1.RAW
  batch -o out in
  expect_status 1
  expect_text 'L1.DNG is there, but does not match its RAW file'
}

ADngThatWasChangedIsFoundOut() {
  pair in/L1
  pair in/L2 2
  batch -o out in -- -b 100
  printf '\x55\x55' | dd of=out/L1.DNG bs=1 seek=5000000 conv=notrunc 2>/dev/null
  batch -o out in -- -b 100
  expect_status 1
  expect_summary 2 0 1 1
  expect_text "L1.DNG is there, but does not match its RAW file"
  # Whatever this run's options are: it is compared with what it was made with.
  touch out/L2.DNG
  batch -o out in
  expect_summary 2 0 1 1
  expect_line '1 already there, made with other options (-b 100); -r makes them anew'
}

ADngThatAnotherProgramRatedIsKept() {
  command -v exiftool >/dev/null || skip "there is no exiftool"
  pair in/L1
  pair in/L2 2
  camera_dng in/L4
  local options
  for options in -b -p; do
    rm -rf out
    batch -o out in -- "$options"
    expect_status 0
    exiftool -q -overwrite_original -Rating=5 out/*.DNG
    batch --verify -o out in
    expect_status 0
    expect_summary 3 0 3 0
    rm -rf out
    batch -o out in -- "$options"
    exiftool -q -overwrite_original -Rating=5 out/*.DNG
    batch -o out in -- "$options"
    expect_status 0
    expect_summary 3 0 3 0
    expect_line "Remark: $scratch/in/L1.RAW: L1.DNG was changed by another program; its pixels match"
    expect_line "Remark: $scratch/in/L4.DNG: L4.DNG was changed by another program; its pixels match"
    [[ $(exiftool -s3 -Rating out/L2.DNG) == 5 ]] || fail "the rating is gone"
  done
  # Its pixels are still proved.
  printf '\x55\x55' | dd of=out/L2.DNG bs=1 seek=5000000 conv=notrunc 2>/dev/null
  batch -o out in -- -p
  expect_status 1
  expect_text "L2.RAW: L2.DNG was changed by another program, and does not match its RAW file: pixel "
  # Nor does anything advise to replace one that cannot be compared.
  exiftool -q -overwrite_original -n -SubIFD:Compression=7 out/L1.DNG
  batch -o out in -- -p
  expect_status 1
  expect_line "Failed: $scratch/in/L1.RAW: L1.DNG was changed by another program, and its pixels cannot be compared"
}

# corrupt FILE: five bytes in the middle of its pixels, and its time does not tell.
corrupt() {
  touch -r "$1" corrupted
  printf '\x55\x55\x55\x55\x55' | dd of="$1" bs=1 seek=5000000 conv=notrunc 2>/dev/null
  touch -r corrupted "$1"
}

ADngThatItDidNotMakeIsComparedOnce() {
  pair in/L1
  pair in/L2 2
  replaced in/L2.RAW "$card/L1000002.RAW"
  mkdir out
  "$program" -i in -o out -b 100 >/dev/null
  corrupt out/L1.DNG
  local i
  for i in 1 2; do
    batch -o out in -- -b 100
    expect_status 1
    expect_summary 2 0 1 1
    expect_text "Failed: $scratch/in/L1.RAW: L1.DNG is there, but does not match its RAW file: pixel "
    expect_text '; if it was made with other options, such as -s, name them; if the RAW file is the good one, delete the DNG and run'
  done
  batch -o out in -- -b 100 -r
  expect_status 0
  batch -o out in -- -b 100
  expect_status 0
  expect_summary 2 0 2 0
  # Once is enough: only --verify reads what seems to be as it was.
  corrupt in/L2.RAW
  batch -o out in -- -b 100
  expect_status 0
  batch --verify -o out in
  expect_status 1
}

ADngWhoseStateIsLostIsComparedAnew() {
  pair in/L1
  batch -o out in
  rm -r "$HOME/.local"
  corrupt out/L1.DNG
  batch -o out in
  expect_status 1
  expect_summary 1 0 0 1
}

# fails_in_every_mode: the one picture in "in" fails, whether DNGs are to be compared or not.
fails_in_every_mode() {
  local options
  for options in --verify '' --no-verify; do
    # shellcheck disable=SC2086  # words
    batch $options -o out in
    expect_status 1
    expect_summary 1 0 0 1
  done
}

ADngThatDiffersStaysFailedUntilItMatches() {
  pair in/L1
  mkdir out
  "$program" -i in -o out >/dev/null
  cp -p out/L1.DNG whole.DNG
  corrupt out/L1.DNG
  fails_in_every_mode
  cp -p whole.DNG out/L1.DNG
  local options
  for options in --no-verify ''; do
    # shellcheck disable=SC2086  # words
    batch $options -o out in
    expect_status 0
    expect_summary 1 0 1 0
  done
}

WithoutVerificationADngThatItDidNotMakeIsNotCompared() {
  pair in/L1
  mkdir out
  "$program" -i in -o out >/dev/null
  corrupt out/L1.DNG
  local i
  for i in 1 2; do
    batch --no-verify -o out in
    expect_status 0
    expect_summary 1 0 1 0
  done
  # That it was kept unseen does not count later.
  batch -o out in
  expect_status 1
}

ADngThatWasMadeUnseenIsComparedLater() {
  pair in/L1
  replaced in/L1.RAW "$card/L1000001.RAW"
  batch --no-verify -o out in
  expect_status 0
  corrupt in/L1.RAW
  batch --no-verify -o out in
  expect_status 0
  batch -o out in
  expect_status 1
}

WhatVerifyFoundIsNotForgotten() {
  pair in/L1
  replaced in/L1.RAW "$card/L1000001.RAW"
  batch -o out in
  corrupt in/L1.RAW
  fails_in_every_mode
  touch -r in/L1.RAW reference
  replaced in/L1.RAW "$card/L1000001.RAW"
  touch -r reference in/L1.RAW
  batch -o out in
  expect_status 0
  expect_summary 1 0 1 0
}

ColumnsThatWerePaintedAreTold() {
  use_databases
  pair in/L1
  batch -o out in -- -s -st
  expect_status 0
  rm -r "$HOME/.local/state"
  local options
  for options in '' '-- -s'; do
    # shellcheck disable=SC2086  # words
    batch -o out in $options
    expect_status 1
    expect_summary 1 0 0 1
  done
}

OnlyOptionsThatChangeADngMakeItAnother() {
  pair in/L1
  batch -o out in -- -b -r
  local options
  for options in -b '-v -b 92' '-blacklevel -verbose'; do
    # shellcheck disable=SC2086  # words
    batch -o out in -- $options
    expect_status 0
    ! grep -q 'other options' printed || fail "other options: $options"
  done
  batch -o out in -- -b 93
  expect_line '1 already there, made with other options (-b); -r makes them anew'
  batch -o out in -- -b 93 -r
  batch -o out in -- -b 93
  ! grep -q 'other options' printed || fail "still other options"
}

ADngOfUnknownOriginIsNoneOfThisRunsOptions() {
  pair in/L1
  mkdir out
  local made
  for made in '' '-b 100' '-p -b'; do
    rm -rf out/* "$HOME/.local"
    # shellcheck disable=SC2086  # words
    "$program" -i in -o out $made >/dev/null
    batch --no-verify -o out in -- -b 200
    expect_status 0
    ! grep -q 'other options' printed || fail "nobody can know"
    batch --verify -o out in -- -b 200
    expect_status 0
    expect_summary 1 0 1 0
    expect_text '1 already there, made with other options ('
    # What was found out is remembered.
    batch --verify -o out in
    expect_status 0
    rm -r "$HOME/.local"
    batch -o out in -- -b 200
    expect_status 0
    expect_text '1 already there, made with other options ('
  done
  rm -r "$HOME/.local"
  # shellcheck disable=SC2086  # words
  batch --verify -o out in -- $made
  expect_status 0
  ! grep -q 'other options' printed || fail "they are the same"
  printf '\x55\x55' | dd of=out/L1.DNG bs=1 seek=5000000 conv=notrunc 2>/dev/null
  rm -r "$HOME/.local"
  batch --verify -o out in
  expect_status 1
  expect_text 'L1.DNG is there, but does not match its RAW file: '
}

ARenamedDngKeepsItsOptions() {
  pair first/L1 1
  pair second/L1 2
  batch -o out first
  batch --rename -o out second -- -b 100
  batch --rename --verify -o out second
  expect_status 0
  expect_summary 1 0 1 0
}

VerifyProvesWhatIsThereAndConvertsNothing() {
  pair in/L1
  pair in/L2 2
  pair in/L3 3
  batch -o out in -- -p
  rm out/L3.DNG
  batch --verify -o out in
  expect_status 1
  expect_summary 3 0 2 1
  expect_line "Failed: $scratch/in/L3.RAW: there is no L3.DNG"
  printf '\x55\x55' | dd of=out/L2.DNG bs=1 seek=5000000 conv=notrunc 2>/dev/null
  batch --verify -o out in
  expect_summary 3 0 1 2
  expect_files out L1.DNG L2.DNG
}

CheckSumsAreWrittenAndUsed() {
  pair in/a/L1
  pair in/a/L2 2
  batch --checksums -o out in
  expect_status 0
  (cd out/a && sha256sum --check --quiet SHA256SUMS) || fail "not as sha256sum has it"
  [[ $(wc -l <out/a/SHA256SUMS) -eq 2 ]] || fail "not two"
  pair in/a/L3 3
  batch --checksums -o out in
  [[ $(wc -l <out/a/SHA256SUMS) -eq 3 ]] || fail "not three"
  sed -i 's/^./0/; s/^0\(.\)/f\1/' out/a/SHA256SUMS
  batch --verify -o out in
  expect_status 1
  expect_text 'its check sum is not the one in SHA256SUMS'
}

DngsThatAreKeptGetTheirCheckSum() {
  pair in/L1
  pair in/L2 2
  batch -o out in -- -b 100
  ! [[ -e out/SHA256SUMS ]] || fail "not asked for"
  local i
  for i in 1 2; do
    batch --checksums --json lines -o out in -- -b 100
    expect_status 0
    expect_summary 2 0 2 0
    (cd out && sha256sum L1.DNG L2.DNG) | cmp -s - out/SHA256SUMS || fail "$(cat out/SHA256SUMS)"
    [[ $(grep -c "\"sha256\": \"$(sha256sum <out/L1.DNG | cut -c 1-64)\"" lines) -eq 1 ]] || fail "$(cat lines)"
  done
}

ACheckSumOfADngThatWasReplacedIsRemoved() {
  pair in/L1
  pair in/L2 2
  batch --checksums -o out in
  rm in/L2.*
  batch -o out in -- -b 100 -r
  (cd out && sha256sum L2.DNG) | cmp -s - out/SHA256SUMS || fail "$(cat out/SHA256SUMS)"
}

OneLineOfJsonForEachPicture() {
  pair in/L1
  pair $'in/L2\n"\xff'
  rm in/L1.JPG
  batch --json lines --checksums -o out in
  expect_status 1
  [[ $(wc -l <lines) -eq 2 ]] || fail "not two lines: $(cat lines)"
  grep -qF '"picture": "'"$scratch"'/in/L2\u000a\"\udcff.RAW"' lines || fail "name: $(cat lines)"
  grep -q '"verdict": "converted".*"options": "no options".*"sha256": "[0-9a-f]\{64\}"}$' lines || fail "$(cat lines)"
  grep -q '"verdict": "failed", "reason": "L1.JPG: Error #0010: Unable to find JPG file.".*"sha256": null}$' lines ||
    fail "$(cat lines)"
}

OnlyThePicturesOfAList() {
  pair in/L1
  pair in/a/L2
  pair in/a/L3
  printf '%s\0' in/a/L2.JPG "$scratch/in/L1.RAW" in/L8.JPG in/a/../L9.RAW gone/L1.JPG >list
  batch --from0 list -o out in
  expect_status 1
  expect_summary 2 2 0 0
  expect_line "In the list, but no picture of the folders: $scratch/in/L8.JPG"
  expect_line "In the list, but no picture of the folders: $scratch/in/L9.RAW"
  expect_line "In the list, but no picture of the folders: gone/L1.JPG"
  expect_files out L1.DNG a/L2.DNG
}

TheNewestFirst() {
  local i
  for i in 1 2 3; do
    cp "$card/L100000$i.RAW" "$card/L100000$i.JPG" "$scratch"
    mkdir -p in
    mv L100000$i.* in
    touch -d "2020-01-0$i" "in/L100000$i.RAW"
  done
  batch -j 1 --newest-first -o out in
  expect_status 0
  [[ $(sed 's/.*L100000\(.\).*/\1/' "$(state_folder)/report" | tr -d '\n') == 321 ]] ||
    fail "$(cat "$(state_folder)/report")"
}

ADngMayHaveTheTimeOfItsRawFile() {
  mkdir in
  cp "$card/L1000001.RAW" "$card/L1000001.JPG" in
  touch -d '2008-05-01 12:00:00' in/L1000001.RAW
  batch --keep-time -o out in
  expect_status 0
  [[ ! out/L1000001.DNG -nt in/L1000001.RAW && ! out/L1000001.DNG -ot in/L1000001.RAW ]] || fail "another time"
  batch --keep-time -o out in
  expect_summary 1 0 1 0
  # Also one that was made without.
  rm out/L1000001.DNG
  batch -o out in
  batch --keep-time -o out in
  expect_summary 1 0 1 0
  [[ ! out/L1000001.DNG -nt in/L1000001.RAW && ! out/L1000001.DNG -ot in/L1000001.RAW ]] || fail "another time"
  rm -r "$HOME/.local"
  touch out/L1000001.DNG
  batch --keep-time -o out in
  expect_summary 1 0 1 0
  [[ ! out/L1000001.DNG -nt in/L1000001.RAW && ! out/L1000001.DNG -ot in/L1000001.RAW ]] || fail "another time"
}

NearMissesAreNamed() {
  pair in/L1
  cp "$card/L1000001.RAW" in/small.raw
  batch -o out in
  expect_status 1
  expect_summary 1 1 0 0
  expect_line "Ignored, not in capital letters: $scratch/in/small.raw"
  batch --accept-damaged -o out in
  expect_status 0
  expect_line "Ignored, not in capital letters: $scratch/in/small.raw"
  rm in/small.raw
  head -c 1000000 "$card/L1000004.DNG" >in/cut.DNG
  batch -o out in
  expect_status 1
  expect_line "Too short for a camera DNG: $scratch/in/cut.DNG"
}

CameraDngsOfAChangedLengthAreNamed() {
  command -v exiftool >/dev/null || skip "there is no exiftool"
  pair in/L1
  camera_dng in/longer
  camera_dng in/shorter
  camera_dng in/small
  exiftool -q -overwrite_original -Rating=5 in/longer.DNG in/small.DNG
  exiftool -q -overwrite_original -GPSLatitude=48.14 -GPSLatitudeRef=N in/shorter.DNG
  [[ $(wc -c <in/longer.DNG) -gt $camera_dng_bytes && $(wc -c <in/shorter.DNG) -lt $camera_dng_bytes ]] ||
    fail "not of changed length"
  local what='Camera DNG, but another program has changed its length; name it by itself to velmarcon'
  batch -o out in/shorter.DNG in/longer.DNG
  expect_status 1
  expect_line "$what: $scratch/in/longer.DNG"
  expect_line "$what: $scratch/in/shorter.DNG"
  mv in/small.DNG in/small.dng
  batch -o out in
  expect_status 1
  expect_line "$what: $scratch/in/longer.DNG"
  expect_line "$what: $scratch/in/shorter.DNG"
  expect_line "Ignored, not in capital letters: $scratch/in/small.dng"
  ! grep -q 'Too short' printed || fail "they are no damage"
  grep -qxF "$what: $scratch/in/longer.DNG" "$(state_folder)/report" || fail "not in the report"
  batch --accept-damaged -o out in
  expect_status 0
  # What the message advises.
  mkdir repaired
  "$program" -i in/longer.DNG -o repaired
  "$program" -i in/shorter.DNG -o repaired
  expect_files repaired longer.DNG shorter.DNG
  # Those that were repaired or converted are none, nor are those of other cameras.
  rm in/*.DNG in/*.dng
  cp repaired/longer.DNG out/L1.DNG in
  camera_dng in/other
  exiftool -q -overwrite_original -Model=M9 -Rating=5 in/other.DNG
  camera_dng in/other2
  exiftool -q -overwrite_original -Model=M9 -GPSLatitude=48.14 in/other2.DNG
  batch -o out in
  expect_status 0
  ! grep -q 'DNG' printed || fail "named"
}

WhatIsIgnoredIsToldInQuietToo() {
  pair in/L1
  cp "$card/L1000001.RAW" in/small.raw
  mkdir in/out
  batch -q -o in/out in
  expect_status 1
  [[ $(cat printed) == "Not searched, because it is the output folder: $scratch/in/out
Ignored, not in capital letters: $scratch/in/small.raw" ]] || fail "printed"
  grep -qxF "ignored, not in capital letters: $scratch/in/small.raw" "$(state_folder)/report" || fail "no report"
  grep -qxF "not searched, because it is the output folder: $scratch/in/out" "$(state_folder)/report" || fail "no report"
}

AnUnreadableRawFileIsToldWithTheReason() {
  pair in/L1
  ln -sf nowhere in/L2.RAW
  batch -o out in
  expect_status 1
  expect_line "Failed: $scratch/in/L2.RAW: L2.RAW cannot be read: No such file or directory"
}

AJpegThatIsMissingOrCannotBeReadIsToldWithTheReason() {
  pair in/L1
  pair in/L2 2
  batch -o out in
  rm in/L2.JPG
  batch -o out in
  expect_status 1
  expect_line "Failed: $scratch/in/L2.RAW: L2.JPG is missing"
  ln -s nowhere in/L2.JPG
  batch -o out in
  expect_line "Failed: $scratch/in/L2.RAW: L2.JPG cannot be read: No such file or directory"
  batch -o new in
  expect_line "Failed: $scratch/in/L2.RAW: L2.JPG cannot be read: No such file or directory"
}

WhyTheOldDngIsStillThereIsToldInOneSentence() {
  pair in/L1
  batch -o out in
  head -c 1000 "$card/L1000001.RAW" >half
  replaced in/L1.RAW half
  batch --accept-damaged -o out in -- -r
  expect_line "Failed: $scratch/in/L1.RAW: Error #0008: Damaged RAW file; the old DNG is still there"
}

FilesAndFoldersOfOtherSystemsAreNoPictures() {
  pair in/L1
  local folder
  for folder in .Trash-1000 .Trashes @eaDir; do
    pair "in/$folder/L2"
  done
  cp in/L1.JPG in/._L1.RAW
  cp in/L1.JPG in/._L1.DNG
  batch -o out in
  expect_status 0
  expect_summary 1 1 0 0
  expect_line 'Ignored, files of macOS (._*): 2'
}

AListWithoutNulsIsRefused() {
  pair in/L1
  echo in/L1.RAW >list
  batch --from0 list -o out in
  expect_status 2
  expect_text 'the list has no NULs; make it with find -print0'
}

TheCountStandsLastAndFailuresAreCountedByKind() {
  pair in/L1
  pair in/L2
  pair in/L3
  rm in/L2.JPG in/L3.JPG
  batch -o out in
  expect_line '2 failed: Error #0010: Unable to find JPG file.'
  [[ $(tail -n 1 printed) == '3 pictures: 1 converted, 0 already there, 2 failed' ]] || fail "not last"
}

TheStateIsTheUsersOwn() {
  pair in/L1
  mkdir -p "$HOME/.local/state/velmarcon-batch" elsewhere
  chmod 777 "$HOME/.local/state/velmarcon-batch"
  batch -o out in
  expect_status 0
  [[ $(stat -c %a "$HOME/.local/state/velmarcon-batch" "$(state_folder)" | sort -u) == 700 ]] || fail "open to others"
  local state
  state=$(state_folder)
  rm -r "$state"
  ln -s "$scratch/elsewhere" "$state"
  batch -o out in
  expect_status 3
  [[ -z $(ls -A elsewhere) ]] || fail "a link was followed"
}

StatesOfLongAgoAreRemoved() {
  pair in/L1
  batch -o out in
  local old
  old=$(state_folder)
  touch -d '91 days ago' "$old/ledger"
  batch -o out2 in
  expect_status 0
  [[ ! -e $old ]] || fail "it is still there"
}

NotEnoughRoomIsToldBeforeItBegins() {
  pair in/L1
  mkdir out
  mount -t tmpfs -o size=10m none out 2>/dev/null || skip "nothing can be mounted"
  trap 'umount "$scratch/out"' EXIT
  batch -o out in
  expect_status 3
  expect_text 'are free. --anyway begins all the same'
  batch --anyway -o out in
  expect_status 1
  expect_text 'the disk is full; the same command resumes from here'
  expect_line '1 picture: 0 converted, 0 already there, 0 failed, 1 not done'
}

AWorkerThatDiesCostsOnePicture() {
  many_pairs in 6
  gate 100
  local jobs
  for jobs in 1 2; do
    rm -rf out
    env GATE_KILLS=/L0000003.DNG "${gated[@]}" "$batch_program" -j "$jobs" -o out in >printed 2>&1 </dev/null &&
      fail "success"
    expect_summary 6 5 0 1
    expect_line "Failed: $scratch/in/L0000003.RAW: the worker was killed or crashed while it was at work on this picture"
    batch -j "$jobs" -o out in
    expect_status 0
    expect_summary 6 1 5 0
    [[ $(find out -type f | wc -l) -eq 6 ]] || fail "left: $(find out)"
  done
}

WhatTheDiskDidNotTakeIsNotThere() {
  many_pairs in 3
  gate 100
  env GATE_FAILS_SYNC=1 "${gated[@]}" "$batch_program" -o out in >printed 2>&1 </dev/null && fail "success"
  expect_summary 3 0 0 3
  expect_text 'L0000001.RAW: the system could not write its DNG to the disk: Input/output error'
  [[ -z $(find out -type f) ]] || fail "left: $(find out)"
  batch -o out in
  expect_status 0
  expect_summary 3 3 0 0
}

# without_case FOLDER: mount there a file system that does not tell "Pic" from "PIC".
without_case() {
  local program=$build/faulty_folder
  [[ -x $program ]] || skip "faulty_folder is not built"
  mkdir "$1" "$1.files"
  "$program" LettersOfAnyCase "$scratch/$1.files" "$scratch/$1" 2>/dev/null &
  server=$!
  trap 'kill "$server" 2>/dev/null || true; wait "$server" || true' EXIT
  until mountpoint -q "$1"; do
    kill -0 "$server" 2>/dev/null || skip "nothing can be mounted"
    sleep 0.02
  done
}

NamesThatTheOutputDoesNotTellApartAreRefused() {
  pair in/Pic 1
  pair in/PIC 2
  without_case out
  batch -o out in
  expect_status 3
  expect_text "$scratch/in/PIC.RAW and $scratch/in/Pic.RAW would get the same DNG"
  [[ -z $(ls -A out) ]] || fail "left: $(ls -A out)"
  batch -o other in
  expect_status 0
  expect_files other Pic.DNG PIC.DNG
}

FoldersThatTheOutputDoesNotTellApartAreRefused() {
  pair in/May/L1 1
  pair in/MAY/L1 2
  without_case out
  batch -o out in
  expect_status 3
  expect_text "$scratch/in/MAY/L1.RAW and $scratch/in/May/L1.RAW would get the same DNG"
  [[ -z $(ls -A out) ]] || fail "left: $(ls -A out)"
  batch -o other in
  expect_status 0
  expect_files other May/L1.DNG MAY/L1.DNG
}

ADngThatWasChangedIsFoundOutWhateverItsTimeSays() {
  pair in/L1
  batch -o out in
  touch -r out/L1.DNG reference
  printf '\x55\x55' | dd of=out/L1.DNG bs=1 seek=5000000 conv=notrunc 2>/dev/null
  touch -r reference out/L1.DNG
  batch -o out in
  expect_status 1
  expect_text 'L1.DNG is there, but does not match its RAW file'
}

ADngThatWasOnlyTouchedIsKept() {
  pair in/L1
  batch -o out in
  chmod a-w out/L1.DNG
  batch -o out in
  expect_status 0
  expect_summary 1 0 1 0
}

# Of dithered pixels only the check sum tells that they are not those that were written.
ADitheredDngIsComparedWithItsCheckSum() {
  use_databases
  pair in/L1
  batch -o out in -- -s
  batch -o again in -- -s
  cmp -s out/L1.DNG again/L1.DNG && fail "the dither is always the same"
  cp again/L1.DNG out/L1.DNG
  batch -o out in -- -s
  expect_status 1
  expect_line "Failed: $scratch/in/L1.RAW: L1.DNG is there, but was changed since it was made; -r makes it anew"
  batch --verify -o out in
  expect_status 1
  expect_line "Failed: $scratch/in/L1.RAW: L1.DNG is there, but was changed since it was made"
  batch -o out in -- -s -r
  expect_status 0
}
