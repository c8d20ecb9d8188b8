# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What the tests of velmarcon-batch share. Each test is a function in one of the *_test.sh files and runs in a process
# and a folder of its own, $scratch; run_test calls it.
# shellcheck disable=SC2154  # run_test sets the variables

set -euo pipefail
unset CDPATH PARALLEL PARALLEL_SSH XDG_STATE_HOME XDG_DATA_HOME

# Bytes of what a converted pair's raw image takes, and of a DNG of the camera's.
export image_bytes=20998656 camera_dng_bytes=10575296

# fail MESSAGE...: the test has failed; says what the last run of velmarcon-batch printed.
fail() {
  printf 'FAILED: %s\n' "$*" >&2
  [[ ! -f $scratch/printed ]] || sed 's/^/  printed: /' "$scratch/printed" >&2
  exit 1
}

# skip REASON...
skip() {
  printf 'SKIPPED: %s\n' "$*" >&2
  exit 77
}

# batch ARGUMENT...: run velmarcon-batch; its status into $status, what it prints into the file $scratch/printed.
batch() {
  status=0
  "$batch_program" "$@" >"$scratch/printed" 2>&1 </dev/null || status=$?
}

expect_status() {
  [[ $status -eq $1 ]] || fail "status $status instead of $1"
}

# expect_line TEXT: one whole line of what was printed.
expect_line() {
  grep -qxF -- "$1" "$scratch/printed" || fail "no line: $1"
}

# expect_text TEXT: somewhere in what was printed.
expect_text() {
  grep -qF -- "$1" "$scratch/printed" || fail "not printed: $1"
}

# expect_files FOLDER NAME...: these files, with their paths in the folder, and no others, parts and hidden ones included.
expect_files() {
  local folder=$1 wanted found
  shift
  wanted=$(printf '%q\n' "$@" | sort)
  found=$(cd "$folder" && find . ! -type d -print0 | while IFS= read -r -d '' name; do printf '%q\n' "${name#./}"; done | sort)
  [[ $found == "$wanted" ]] || fail "in $folder there is: $found instead of: $wanted"
}

expect_same() {
  cmp -s -- "$1" "$2" || fail "$1 differs from $2"
}

# expect_summary PICTURES CONVERTED KEPT FAILED
expect_summary() {
  local many=s
  [[ $1 -ne 1 ]] || many=
  expect_line "$1 picture$many: $2 converted, $3 already there, $4 failed"
}

# pair PATH [NUMBER]: the card's pair of that number (default 1) as PATH.RAW and PATH.JPG.
pair() {
  local number=${2-1}
  mkdir -p -- "${1%/*}"
  ln -- "$card/L100000$number.RAW" "$1.RAW"
  ln -- "$card/L100000$number.JPG" "$1.JPG"
}

# camera_dng PATH: a DNG of the camera's as PATH.DNG; a copy, because a repair may replace it.
camera_dng() {
  mkdir -p -- "${1%/*}"
  cp -- "$card/L1000004.DNG" "$1.DNG"
}

# many_pairs FOLDER NUMBER
many_pairs() {
  local i
  for ((i = 1; i <= $2; i++)); do
    pair "$1/$(printf 'L%07d' "$i")" $((i % 3 + 1))
  done
}

# state_folder: of the only command that was run.
state_folder() {
  local folders=("$HOME"/.local/state/velmarcon-batch/*/)
  [[ ${#folders[@]} -eq 1 ]] || fail "not one folder of state but ${folders[*]}"
  printf '%s' "${folders[0]%/}"
}

# wait_for CONDITION...: until the command succeeds; a minute is for hung runs.
wait_for() {
  local deadline=$((SECONDS + 60))
  until "$@" 2>/dev/null; do
    [[ $SECONDS -lt $deadline ]] || fail "did not happen: $*"
    sleep 0.02
  done
}

# need_terminal: skips the test where none can be made, as in a root folder without /dev/pts.
need_terminal() {
  command -v script >/dev/null || skip "there is no script, which makes a terminal"
  script -qec true /dev/null </dev/null >/dev/null 2>&1 || skip "no terminal can be made"
}

# has_dngs FOLDER NUMBER: at least so many.
has_dngs() {
  [[ $(find "$1" -name '*.DNG' | wc -l) -ge $2 ]]
}

# gate NUMBER: what is started through $gated does as many pictures, and then waits for the file $scratch/open. So a run
# can be interrupted at a known place, however busy the machine is.
gate() {
  printf '\0' >"$scratch/tickets"
  # shellcheck disable=SC2034  # for the tests
  # A path in LD_PRELOAD ends at a blank.
  gated=(env "LD_LIBRARY_PATH=$build/batch-gate" LD_PRELOAD=gate.so "GATE_FOLDER=$scratch" "GATE_TICKETS=$1")
}

# use_databases: both databases where the installed command has them.
use_databases() {
  mkdir -p -- "$HOME/.local/share/velmarcon"
  cp -- "$card/lensdb.ini" "$card/sensdb.ini" "$HOME/.local/share/velmarcon"
}
