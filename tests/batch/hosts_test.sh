# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# velmarcon-batch --hosts.
# shellcheck disable=SC2154,SC2119  # run_test sets the variables; arguments may be left out
# shellcheck source-path=SCRIPTDIR source=ssh_server.sh
. "$here/ssh_server.sh"

# use_databases: a program with both databases beside it.
use_databases() {
  mkdir -- "$scratch/with-databases"
  ln -- "$program" "$card/lensdb.ini" "$card/sensdb.ini" "$scratch/with-databases"
  export VELMARCON=$scratch/with-databases/velmarcon
}

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
  [[ $(wc -l <"$scratch/done-on-host") -eq 3 ]] || fail "not done on the host"
  [[ -z $(find "$host_home" -mindepth 1 ! -path "*/.cache" ! -path '*/.parallel*') ]] ||
    fail "left on the host: $(find "$host_home")"
}
