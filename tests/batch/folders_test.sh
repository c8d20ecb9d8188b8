# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Which pictures velmarcon-batch finds, and where it puts their DNGs.
# shellcheck disable=SC2154  # run_test sets the variables
# shellcheck disable=SC2164  # it also makes a failing cd end the test
# shellcheck disable=SC2016,SC1003  # names that look like something else

MirrorsTheFolderTree() {
  pair in/L1
  pair in/2008/05/L2 2
  camera_dng in/2009/L3
  batch in -o out
  expect_status 0
  expect_summary 3 3 0 0
  expect_files out L1.DNG 2008/05/L2.DNG 2009/L3.DNG
  "$program" -i in/2008/05/L2.RAW -o . >/dev/null
  expect_same L2.DNG out/2008/05/L2.DNG
}

WithoutOutputTheDngsLieBesideTheRawFiles() {
  pair in/a/L1
  batch in
  expect_status 0
  expect_files in a/L1.RAW a/L1.JPG a/L1.DNG
}

MakesTheOutputFolder() {
  pair in/L1
  batch -o new/folder in
  expect_status 0
  expect_files new folder/L1.DNG
}

SeveralFoldersGetAFolderEach() {
  pair one/x/L1
  pair deep/two/L1 2
  batch -o out one deep/two/
  expect_status 0
  expect_files out one/x/L1.DNG two/L1.DNG
}

AnOutputFolderThatCannotBeLookedAtIsToldByItsReason() {
  pair in/L1
  pair in/sub/L2
  mkdir out
  ln -s sub out/sub
  batch -j 1 -o out in
  expect_status 1
  expect_summary 2 1 0 1
  expect_text "Failed: $scratch/in/sub/L2.RAW: the folder $scratch/out/sub/ cannot be made: Too many levels of symbolic links"
}

SinglePicturesOfSeveralFoldersGetAFolderEach() {
  pair one/L1
  pair one/L2
  pair deep/two/L1 2
  batch -o out one/L1.RAW deep/two/L1.JPG
  expect_status 0
  expect_files out one/L1.DNG two/L1.DNG
  pair other/one/L1
  batch -o out one/L1.RAW other/one/L1.RAW
  expect_status 2
  expect_text 'several folders are called one, and their DNGs would mix'
}

JpegsWithoutARawFileAreARemark() {
  pair in/L1
  pair in/L2
  pair jpegs/L7
  camera_dng in/L3
  cp "$card/L1000001.JPG" in/L3.JPG
  rm in/L2.RAW jpegs/L7.RAW
  mv jpegs in
  batch -o out in
  expect_status 0
  expect_line '1 JPEG has no RAW file next to it'
  expect_line "JPEG without a RAW file: $scratch/in/L2.JPG"
  grep -qxF "JPEG without a RAW file: $scratch/in/L2.JPG" "$(state_folder)/report" || fail "not in the report"
  expect_summary 2 2 0 0
  cp "$card/L1000001.JPG" in/L4.JPG
  batch -n -o out in
  expect_status 0
  expect_line '2 JPEGs have no RAW file next to them'
  batch -q -o out in
  [[ ! -s printed ]] || fail "told under --quiet"
}

RefusesSeveralFoldersOfOneName() {
  pair a/DCIM/L1
  pair b/DCIM/L1
  batch -o out a/DCIM b/DCIM
  expect_status 2
  expect_text 'several folders are called DCIM'
  batch a/DCIM b/DCIM
  expect_status 0
  expect_summary 2 2 0 0
}

RefusesAFolderInsideAnother() {
  pair in/a/L1
  local folders
  for folders in 'in in/a' 'in/a in' 'in ./in/'; do
    # shellcheck disable=SC2086
    batch -o out $folders
    expect_status 2
    expect_text 'have pictures in common'
  done
}

UnderstandsDotsAndSlashes() {
  pair in/a/L1
  mkdir in/b
  cd in/b
  batch -o ../../out/. ../../in/./a/..//
  expect_status 0
  cd ../..
  expect_files out a/L1.DNG
  cd in
  batch -o .. .
  expect_status 0
  expect_files "$scratch/a" L1.DNG
  cd a
  batch -o "$scratch/named" . "$card"
  expect_status 0
  [[ -f $scratch/named/a/L1.DNG && -f $scratch/named/card/L1000003.DNG ]] || fail "a folder's name is lost"
}

DoesNotSearchTheOutputFolderInTheInput() {
  pair in/L1
  camera_dng in/out/L2
  pair 'in/out [x]/L3'
  batch -o in/out in
  expect_status 0
  expect_summary 2 2 0 0
  expect_text "Not searched, because it is the output folder: $scratch/in/out"
  expect_files in/out L1.DNG L2.DNG 'out [x]/L3.DNG'
}

OutputThatIsTheInputFolder() {
  pair in/a/L1
  batch -o in in
  expect_status 0
  expect_files in a/L1.RAW a/L1.JPG a/L1.DNG
}

DoesNotFollowLinksToFolders() {
  pair in/a/L1
  pair elsewhere/L2
  ln -s .. in/a/circle
  ln -s ../elsewhere in/other
  ln -s ../elsewhere in/other.RAW
  ln -s in link
  batch -o out link
  expect_status 0
  expect_files out a/L1.DNG
}

TakesALinkToAFileForAFile() {
  pair there/L1
  camera_dng there/L2
  "$program" -i there/L1.RAW -o there >/dev/null
  mkdir in
  ln -s ../there/L1.RAW ../there/L1.JPG ../there/L2.DNG ../there/L1.DNG in
  rm in/L1.DNG
  ln -s ../there/L1.DNG in/made.DNG
  batch -o out in
  expect_status 0
  expect_files out L1.DNG L2.DNG
}

TakesOnlyWhatVelmarconTakesInAFolder() {
  pair in/L1
  cp "$card/L1000001.RAW" in/small.raw
  cp "$card/L1000004.DNG" in/small.dng
  { cat "$card/L1000004.DNG"; printf x; } >in/long.DNG
  mkdir in/folder.RAW
  batch -o out in
  expect_status 1
  expect_summary 1 1 0 0
  expect_files out L1.DNG
}

TakesAnyName() {
  local name names=('two words' "it's" 'a"b' '$HOME' '`id`' '{}' '{1}' '%s%n' '*' '-r' '#1' $'line\nfeed' $'\n' \
    $'latin\xe9' 'ünï' 'back\slash' 'end\' '~' '!' '&& false' '..x' ' ' '.' 'a.b')
  for name in "${names[@]}"; do
    pair "in/$name.d/$name"
  done
  camera_dng 'in/own\one/a\b c'
  batch -o out in
  expect_status 0
  expect_summary 25 25 0 0
  for name in "${names[@]}"; do
    [[ -f out/$name.d/$name.DNG ]] || fail "no DNG for $name"
    expect_same "out/$name.d/$name.DNG" 'out/two words.d/two words.DNG'
  done
  [[ -f 'out/own\one/a\b c.DNG' ]] || fail 'the DNG of the camera was not repaired'
  [[ $(find out -type f | wc -l) -eq $(find out -name '*.DNG' | wc -l) ]] || fail "more than DNGs: $(find out)"
  batch -o out in
  expect_status 0
  expect_summary 25 0 25 0
}

TakesAnyNameOfAFolder() {
  local name
  for name in -o $'line\nfeed\n' '{}' 'x y' '100%' 'back\'; do
    pair "in/$name/L1"
    (cd in && batch -o "../out/$name/" "./$name" && exit "$status") || fail "folder $name"
    [[ -f out/$name/L1.DNG ]] || fail "no DNG for $name"
  done
}

# unprivileged COMMAND...: as a user to whom permissions matter.
unprivileged() {
  if [[ $(id -u) -ne 0 ]]; then
    "$@"
    return
  fi
  command -v setpriv >/dev/null || skip "root, and there is no setpriv"
  chmod 755 "$scratch"
  chown -R 65534:65534 "$scratch"
  setpriv --reuid 65534 --regid 65534 --clear-groups "$batch_program" --help >/dev/null 2>&1 ||
    skip "only root may enter this folder"
  batch_program=$scratch/unprivileged
  printf '#!/bin/sh\nexec setpriv --reuid 65534 --regid 65534 --clear-groups "%s" "$@"\n' \
    "$build/velmarcon-batch" >"$batch_program"
  chmod 755 "$batch_program"
  "$@"
}

AFolderThatCannotBeReadIsNoSuccess() {
  pair in/a/L1
  pair in/closed/L2
  chmod 0 in/closed
  unprivileged batch -o out in
  expect_status 1
  expect_summary 1 1 0 0
  expect_text 'Not all folders could be read:'
  expect_text 'closed'
}

AnOutputFolderThatCannotBeWrittenFailsEveryPicture() {
  pair in/L1
  pair in/sub/L2
  mkdir out
  chmod 555 out
  unprivileged batch -o out in
  expect_status 1
  expect_summary 2 0 0 2
  expect_text "Failed: $scratch/in/L1.RAW: $scratch/out/L1.DNG: DNG not written: Permission denied"
  expect_text "Failed: $scratch/in/sub/L2.RAW: the folder $scratch/out/sub/ cannot be made: Permission denied"
}

AnOldDngThatCannotBeReadIsNotReplaced() {
  pair in/L1
  mkdir out
  echo old >out/L1.DNG
  chmod 0 out/L1.DNG
  unprivileged batch -o out in -- -r
  expect_status 1
  expect_text 'L1.DNG is there, but cannot be read'
}

SinglePicturesAreNamedByAnyOfTheirFiles() {
  pair in/L1
  pair in/L2 2
  pair in/L3 3
  camera_dng in/L4
  : >in/L4.JPG
  pair in/below/L5
  batch -o out in/L1.RAW in/L1.JPG in/./L3.JPG in/L4.JPG in/L4.DNG
  expect_status 0
  expect_summary 3 3 0 0
  expect_files out L1.DNG L3.DNG L4.DNG
  batch in/L1.RAW in/L1.JPG
  expect_status 0
  # With the DNG that lies next to them by now.
  batch in/L1.RAW in/L1.JPG in/L1.DNG
  expect_status 0
  expect_summary 1 0 1 0
  batch in/below/L5.JPG in/L2.RAW
  expect_status 0
  expect_summary 2 2 0 0
  rm in/*.DNG in/below/*.DNG
  batch in/L1.RAW in/below
  expect_status 0
  expect_files in L1.RAW L1.JPG L1.DNG L2.RAW L2.JPG L3.RAW L3.JPG L4.JPG below/L5.RAW below/L5.JPG below/L5.DNG
  batch in/L2.RAW in
  expect_summary 4 2 2 0
}

AFileThatIsNoPicturesIsNamed() {
  pair in/L1
  cp "$card/L1000001.JPG" in/L2.JPG
  cp "$card/L1000001.RAW" in/small.raw
  : >in/L3.BIA
  batch -o out in/L1.JPG in/L2.JPG in/L3.BIA in/small.raw
  expect_status 1
  expect_line "No picture: $scratch/in/L2.JPG"
  expect_line "No picture: $scratch/in/L3.BIA"
  expect_line "Ignored, not in capital letters: $scratch/in/small.raw"
  expect_files out L1.DNG
}
