# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Runs of velmarcon-batch that are interrupted, and those that go on from there.
# shellcheck disable=SC2154  # run_test sets the variables

# begin NUMBER ARGUMENT...: run velmarcon-batch in a session of its own, up to where as many pictures are done; its
# process into $front.
begin() {
  gate "$1"
  shift
  # What a script starts in the background ignores Ctrl-C, unless told otherwise.
  setsid "${gated[@]}" env --default-signal=INT "$batch_program" "$@" >"$scratch/printed" 2>&1 </dev/null &
  front=$!
}

# session_of FRONT: all processes of its session that have not ended; the system may take its time to clear away those
# that have. GNU parallel gives each job a process group of its own.
session_of() {
  local process status fields
  for process in /proc/[0-9]*; do
    status=$(cat "$process/stat" 2>/dev/null) || continue
    read -r -a fields <<<"${status##*) }"
    [[ ${fields[3]} != "$1" || ${fields[0]} == Z ]] || printf '%s\n' "${process#/proc/}"
  done
}

# kill_all: the power is cut.
kill_all() {
  local processes
  until session_is_over; do
    mapfile -t processes < <(session_of "$front")
    kill -KILL "${processes[@]}" 2>/dev/null || true
    wait "$front" 2>/dev/null || true
  done
}

# end_of_front: wait for it; its status into $status.
end_of_front() {
  status=0
  wait "$front" || status=$?
}

# end_of_session: wait until nothing of the run is left. What was at work on a picture when the front ended may end it.
end_of_session() {
  : >"$scratch/open"
  wait_for session_is_over
}

session_is_over() {
  [[ -z $(session_of "$front") ]]
}

# expect_whole_dngs FOLDER: whatever has its final name is as a run without interruption makes it.
expect_whole_dngs() {
  local dng
  while IFS= read -r dng; do
    expect_same "$dng" "expected/${dng##*/}"
  done < <(find "$1" -name '*.DNG')
}

# prepare NUMBER: so many pairs in the folder in, and their DNGs in the folder expected.
prepare() {
  many_pairs in "$1"
  mkdir expected
  "$program" -i in -o expected >/dev/null
}

# expect_completion NUMBER: the same command ends with every DNG, having made only those that were missing.
expect_completion() {
  local there before
  # What was at work on a picture when the run ended may still end it; it keeps the lock of the run.
  : >"$scratch/open"
  wait_for flock -n "$(state_folder)/lock" true
  there=$(find out -name '*.DNG' | wc -l)
  before=$(numbered_dngs)
  [[ $there -lt $1 ]] || fail "all were done before the interruption"
  batch -j 2 -o out in
  expect_status 0
  expect_summary "$1" $(($1 - there)) "$there" 0
  [[ $(ls -A out) == "$(ls -A expected)" ]] || fail "in the output folder: $(ls -A out)"
  expect_whole_dngs out
  [[ -z $(comm -23 <(echo "$before") <(numbered_dngs)) ]] || fail "a DNG that was there was made once more"
}

# numbered_dngs: the DNGs in the output folder, each with what tells the file from any other.
numbered_dngs() {
  find out -name '*.DNG' -exec stat -c '%i %y %n' {} + | sort
}

AnInterruptEndsWith130AndTheNextRunGoesOn() {
  prepare 12
  begin 2 -j 2 -o out in
  wait_for has_dngs out 2
  kill -INT "$front"
  end_of_front
  expect_status 130
  expect_text 'Interrupted (INT). The same command resumes from here.'
  expect_text ' not reached'
  end_of_session
  expect_whole_dngs out
  expect_completion 12
}

CtrlCReachesEveryone() {
  need_terminal
  prepare 12
  gate 2
  # The terminal sends the signal to all processes in the foreground.
  mkfifo keys
  setsid env --default-signal=INT script -qec "$(printf '%q ' "${gated[@]}" "$batch_program" -j 2 -o out in)" typescript <keys >/dev/null &
  front=$!
  exec 5>keys
  wait_for has_dngs out 2
  printf '\003' >&5
  end_of_front
  expect_status 130
  grep -q 'Interrupted (INT)' typescript || fail "printed: $(cat typescript)"
  expect_whole_dngs out
  expect_completion 12
}

ATerminationIsAnInterruption() {
  prepare 12
  local signal
  for signal in TERM:143 HUP:129; do
    rm -rf out open
    begin 1 -j 2 -o out in
    wait_for has_dngs out 1
    kill -"${signal%:*}" "$front"
    end_of_front
    expect_status "${signal#*:}"
    end_of_session
    expect_whole_dngs out
  done
  expect_completion 12
}

APowerCutLeavesOnlyWholeDngs() {
  prepare 12
  begin 2 -j 2 -o out in
  wait_for has_dngs out 2
  kill_all
  expect_whole_dngs out
  expect_completion 12
}

PowerCutsAtAnyMoment() {
  prepare 12
  local cut
  for ((cut = 0; cut < 8; cut++)); do
    rm -rf out
    setsid "$batch_program" -j 2 -o out in >"$scratch/printed" 2>&1 </dev/null &
    front=$!
    # From before the first picture to after the last one, on a machine with nothing else to do.
    sleep "0.$((1 + cut))"
    kill_all
    [[ ! -d out ]] || expect_whole_dngs out
  done
  batch -j 2 -o out in
  expect_status 0
  [[ $(ls -A out) == "$(ls -A expected)" ]] || fail "in the output folder: $(ls -A out)"
  expect_whole_dngs out
}

JobsEndWhenTheirRunIsKilled() {
  prepare 12
  begin 2 -j 2 -o out in
  wait_for has_dngs out 2
  kill -KILL "$front"
  end_of_front
  : >open
  # What is at work on a picture ends with it.
  end_of_session
  batch -j 2 -o out in
  expect_status 0
  [[ $(ls -A out) == "$(ls -A expected)" ]] || fail "in the output folder: $(ls -A out)"
  expect_whole_dngs out
  [[ $(<printed) =~ ' pictures: '([0-9]+)' converted' && ${BASH_REMATCH[1]} -gt 0 ]] || fail "all had been done"
}

# refreshed_files FOLDER: those that are not the ones of the folder old.
refreshed_files() {
  local dng
  for dng in "$1"/*.DNG; do
    [[ $dng -ef old/${dng##*/} ]] || printf '%s\n' "$dng"
  done
}

has_refreshed() {
  [[ $(refreshed_files out | wc -l) -ge $1 ]]
}

has_recorded() {
  has_verdicts converted "$1"
}

# has_verdicts WORD NUMBER: of at least so many pictures.
has_verdicts() {
  [[ $(cat "$HOME"/.local/state/velmarcon-batch/*/records/* | tr '\0' '\n' | grep -cx "$1") -ge $2 ]]
}

# begin_refresh: a run with -r that is cut off after a few pictures; those are linked into the folder refreshed.
begin_refresh() {
  prepare 12
  cp -r expected out
  mkdir old refreshed
  ln out/* old
  begin 3 -j 2 -o out in -- -r
  wait_for has_refreshed 3
  wait_for has_recorded 3
  "$1"
  refreshed_files out | while IFS= read -r dng; do ln "$dng" refreshed; done
  number_done=$(find refreshed -name '*.DNG' | wc -l)
  [[ $number_done -lt 12 ]] || fail "all were done before the interruption"
}

kill_front_by_int() {
  kill -INT "$front"
  end_of_front
  expect_status 130
  end_of_session
}

# expect_same_files: those in the folder refreshed are still the ones in the output folder.
expect_same_files() {
  local dng
  for dng in refreshed/*; do
    [[ $dng -ef out/${dng##*/} ]] || fail "refreshed once more: $dng"
  done
}

ARefreshGoesOnWhereItWasInterrupted() {
  begin_refresh kill_front_by_int
  batch -j 2 -o out in -- -r
  expect_status 0
  expect_summary 12 $((12 - number_done)) "$number_done" 0
  expect_text "Resuming an interrupted run, which refreshed $number_done of them"
  expect_same_files
  [[ $(refreshed_files out | wc -l) -eq 12 ]] || fail "not all were refreshed"
  expect_whole_dngs out
  # That run came to its end; the next one is a new one.
  batch -j 2 -o out in -- -r
  expect_summary 12 12 0 0
}

ARefreshGoesOnAfterAPowerCut() {
  begin_refresh kill_all
  batch -j 2 -o out in -- -r
  expect_status 0
  # One picture for each job may have been finished, but not recorded.
  [[ $(grep -c . < <(for dng in refreshed/*; do [[ $dng -ef out/${dng##*/} ]] || echo x; done)) -le 2 ]] ||
    fail "most were refreshed once more"
  [[ $(refreshed_files out | wc -l) -eq 12 ]] || fail "not all were refreshed"
  expect_whole_dngs out
}

ARefreshGoesOnAlthoughPicturesCameAndWent() {
  begin_refresh kill_front_by_int
  # Before and between the others, so that nothing has its old number.
  pair in/A 1
  pair in/L0000001x 2
  local gone
  gone=$(basename "$(find refreshed -name '*.DNG' | sort | head -n 1)" .DNG)
  rm "in/$gone.RAW" "in/$gone.JPG"
  batch -j 2 -o out in -- -r
  expect_status 0
  expect_summary 13 $((13 - number_done + 1)) $((number_done - 1)) 0
  expect_same_files
  [[ -f out/A.DNG && -f out/L0000001x.DNG ]] || fail "new pictures were ignored"
  [[ $(refreshed_files out | grep -c 'L0.*[0-9].DNG') -eq 12 ]] || fail "not all were refreshed"
}

AVerificationInBetweenLeavesARefreshToGoOn() {
  begin_refresh kill_front_by_int
  batch --verify -j 2 -o out in
  expect_status 0
  expect_summary 12 0 12 0
  batch -j 2 -o out in -- -r
  expect_status 0
  expect_summary 12 $((12 - number_done)) "$number_done" 0
  expect_same_files
}

AnInterruptedVerificationEndsWith130AndBeginsAnew() {
  prepare 6
  cp -r expected out
  gate 0
  setsid env GATE_HOLDS=/in/L0000003.RAW "${gated[@]}" env --default-signal=INT \
    "$batch_program" --verify -j 1 -o out in >printed 2>&1 </dev/null &
  front=$!
  wait_for has_verdicts kept 2
  kill -INT "$front"
  wait_for grep -qxF 'Stopping (INT): pictures that were begun are finished first' printed
  : >open
  end_of_front
  expect_status 130
  expect_line 'Interrupted (INT). The same command begins anew.'
  grep -qxE '6 pictures: 0 converted, [23] already there, 0 failed, [34] not reached' printed || fail "no count"
  end_of_session
  batch --verify -j 1 -o out in
  expect_status 0
  expect_summary 6 0 6 0
}

FreshDoesThemAll() {
  begin_refresh kill_front_by_int
  batch --fresh -j 2 -o out in -- -r
  expect_status 0
  expect_summary 12 12 0 0
}

OtherOptionsAreAnotherCommand() {
  begin_refresh kill_front_by_int
  batch -j 2 -o out in -- -r -p
  expect_status 0
  expect_summary 12 12 0 0
}

ADngThatGotLostIsMadeAgain() {
  begin_refresh kill_front_by_int
  local lost
  lost=out/$(basename "$(find refreshed -name '*.DNG' | head -n 1)")
  rm "$lost"
  batch -j 2 -o out in -- -r
  expect_status 0
  expect_summary 12 $((12 - number_done + 1)) $((number_done - 1)) 0
  [[ -f $lost ]] || fail "it was not made again"
}

TheSameCommandDoesNotRunTwiceAtOnce() {
  command -v flock >/dev/null || skip "there is no flock"
  many_pairs in 3
  begin 1 -j 1 -o out in
  wait_for has_dngs out 1
  batch -o out in
  expect_status 3
  expect_line 'velmarcon-batch: another velmarcon-batch is at work on this output; waiting a few seconds for its end'
  expect_line 'velmarcon-batch: another velmarcon-batch is at work on this output; wait for its end'
  batch -o out in -- -p
  expect_status 3
  batch --state elsewhere -o out in
  expect_status 3
  expect_text 'another velmarcon-batch is at work on this output'
  kill_all
}

OutputsThatLieInEachOtherAreOne() {
  many_pairs in 3
  pair in2/L1
  begin 1 -j 1 -o out/2008 in
  wait_for has_dngs out 1
  local output
  for output in out out/2008/May; do
    batch -o "$output" in2
    expect_status 3
    expect_text "another velmarcon-batch is at work on this output, or on one in it or around it ($scratch/out"
  done
  batch -o out/2009 in2
  expect_status 0
  kill_all
  batch -o out in2
  expect_status 0
}
