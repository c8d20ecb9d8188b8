# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# velmarcon-batch --hosts.
# shellcheck disable=SC2154,SC2119  # run_test sets the variables; arguments may be left out
# shellcheck source-path=SCRIPTDIR source=ssh_server.sh
. "$here/ssh_server.sh"

AnotherMachineMakesTheSameDngs() {
  start_ssh_server
  put_program_on_host
  use_databases
  pair in/a/L1 1
  pair in/b/L1 2
  camera_dng in/b/L2
  batch -o here in -- -l -p
  expect_status 0
  batch -o there --hosts other in -- -l -p
  expect_status 0
  expect_summary 3 3 0 0
  expect_files there a/L1.DNG b/L1.DNG b/L2.DNG
  local name
  for name in a/L1 b/L1 b/L2; do
    expect_same "here/$name.DNG" "there/$name.DNG"
  done
  [[ -s $scratch/done-on-host ]] || fail "not done on the host"
  [[ -z $(find "$host_home" -mindepth 1 ! -path "*/.cache" ! -path '*/.parallel*') ]] ||
    fail "left on the host: $(find "$host_home")"
}

AnotherMachineUsesTheDatabasesOfThisOne() {
  start_ssh_server
  put_program_on_host
  pair in/L1
  batch -o out --hosts other in -- -l
  expect_status 1
  expect_text 'Error #0012: Missing lens database file lensdb.ini.'
  use_databases
  # The second option adds a remark when there is no sensor database.
  batch -o out --hosts other in -- -l -s
  expect_status 0
  expect_summary 1 1 0 0
  ! grep -q "with a remark" printed || fail "no sensor database there"
}

AnotherMachineTakesAnyName() {
  start_ssh_server
  put_program_on_host
  # shellcheck disable=SC2016
  local name names=('two "words"' "it's {1}" '$HOME `id` *' '-r %s' $'line\nfeed' $'latin\xe9 back\\slash')
  for name in "${names[@]}"; do
    pair "in/$name.d/$name"
  done
  batch -o out --hosts other in
  expect_status 0
  expect_summary 6 6 0 0
  for name in "${names[@]}"; do
    [[ -f out/$name.d/$name.DNG ]] || fail "no DNG for $name"
  done
  [[ -z $(find "$host_home" -type f ! -path '*/.parallel*') ]] || fail "left on the host: $(find "$host_home")"
}

AnotherMachineTellsWhyAPictureFailed() {
  start_ssh_server
  put_program_on_host
  pair one/L1
  rm one/L1.JPG
  pair two/L1
  ln "$card/L1000002.RAW" two/L1.BIA
  camera_dng two/L2
  printf 'XX' | dd of=two/L2.DNG bs=1 seek=8 conv=notrunc 2>/dev/null
  batch -o out --hosts other one two -- -b
  expect_status 1
  expect_summary 3 1 0 2
  expect_line "Failed: $scratch/one/L1.RAW: L1.JPG: Error #0010: Unable to find JPG file."
  expect_text "Failed: $scratch/two/L2.DNG: Error #00"
  expect_files out two/L1.DNG
  "$program" -i two/L1 -o . -b >/dev/null
  expect_same L1.DNG out/two/L1.DNG
  # The next run takes over only what is not here.
  rm -f "$scratch/done-on-host"
  ln "$card/L1000001.JPG" one/L1.JPG
  batch -o out --hosts other one two -- -b
  expect_summary 3 1 1 1
  [[ $(wc -l <"$scratch/done-on-host") -eq 2 ]] || fail "done once more"
}

# not_begun TEXT HOSTS: status 3, and nothing was done.
not_begun() {
  batch -o out --hosts "$2" in
  expect_status 3
  expect_text "$1"
  [[ -z $(ls -A out) ]] || fail "something was done"
}

AHostThatIsNotReadyIsNamedAtOnce() {
  start_ssh_server
  pair in/L1
  mkdir out
  not_begun 'host other: no velmarcon-batch there' other
  printf '#!/bin/sh\nexit 1\n' >"$host_bin/velmarcon-batch"
  chmod +x "$host_bin/velmarcon-batch"
  not_begun 'host other: velmarcon-batch there is another program, not 1.' other
  put_program_on_host 1.0
  not_begun 'host other: velmarcon-batch there is velmarcon-batch 1.0, not 1.' other
  put_program_on_host
  not_begun 'host nowhere: ' other,nowhere
}

ThisMachineIsAHostToo() {
  pair in/L1
  camera_dng in/sub/L2
  batch -o out --hosts : in
  expect_status 0
  expect_summary 2 2 0 0
  expect_files out L1.DNG sub/L2.DNG
  batch -o out --hosts 2/: in
  expect_summary 2 0 2 0
}

MachinesShareTheWork() {
  start_ssh_server
  put_program_on_host
  many_pairs in 6
  batch -o out --hosts 1/:,2/other in
  expect_status 0
  expect_summary 6 6 0 0
  local hosts
  hosts=$(awk 'NR > 1 { print $2 }' "$(state_folder)/joblog" | sort -u | wc -l)
  [[ $hosts -eq 2 ]] || fail "not shared: $(cat "$(state_folder)/joblog")"
}

APictureThatDidNotArriveIsSentAgain() {
  start_ssh_server
  put_program_on_host
  mkdir bin
  cat >bin/rsync <<END
#!/bin/sh
case "\$*" in
  *sent/*) mkdir "$scratch/refused-once" 2>/dev/null && exit 23 ;;
esac
exec $(command -v rsync) "\$@"
END
  chmod +x bin/rsync
  pair in/L1
  PATH=$PWD/bin:$PATH batch -o out --hosts other in
  [[ -d refused-once ]] || fail "everything arrived at once"
  expect_status 0
  expect_summary 1 1 0 0
}

WhatIsReplacedThroughAnotherMachine() {
  start_ssh_server
  put_program_on_host
  pair in/L1
  camera_dng in/L2
  batch in
  ln in/L1.DNG old.DNG
  batch --hosts other in -- -r
  expect_status 1
  expect_summary 2 1 0 1
  [[ ! in/L1.DNG -ef old.DNG ]] || fail "not replaced"
  expect_same in/L1.DNG old.DNG
  expect_text "other machines do not replace a camera DNG; leave out --hosts"
  expect_same in/L2.DNG "$card/L1000004.DNG"
}

AnInterruptedRunOnAnotherMachineGoesOn() {
  start_ssh_server
  put_program_on_host
  many_pairs in 6
  mkdir expected
  "$program" -i in -o expected >/dev/null
  : >hold
  env --default-signal=INT "$batch_program" -o out --hosts 2/other in >printed 2>&1 </dev/null &
  local front=$!
  wait_for has_dngs out 1
  kill -INT "$front"
  local ended=0
  wait "$front" || ended=$?
  [[ $ended -eq 130 ]] || fail "status $ended"
  rm hold
  local dng there folders
  for dng in out/*.DNG; do
    expect_same "$dng" "expected/${dng##*/}"
  done
  there=$(find out -name '*.DNG' | wc -l)
  [[ $there -lt 6 ]] || fail "all were done before the interruption"
  batch -o out --hosts 2/other in
  expect_status 0
  expect_summary 6 $((6 - there)) "$there" 0
  [[ $(ls -A out) == "$(ls -A expected)" ]] || fail "in the output folder: $(ls -A out)"
  # Each in a folder of its own: the first run's connections may still remove its pictures there, late.
  folders=$(sort -u done-on-host | wc -l)
  [[ $folders -eq 2 ]] || fail "two runs in $folders folders: $(cat done-on-host)"
}
