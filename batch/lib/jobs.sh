# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Runs the jobs: GNU parallel on this machine, several pictures to a job.
# shellcheck disable=SC2034,SC2154  # the variables are shared by the files of this folder

# What a job runs; GNU parallel adds the pictures' names, quoted.
# shellcheck disable=SC2016
readonly job_command='exec "$VELMARCON_BATCH_LIB/convert"'

# announce: what is about to be done.
announce() {
  say '%s; job log: %s\n' "$(number_of_pictures "${#images[@]}")" "$(shown "$state/joblog")"
  if ((${#refreshed[@]} > 0)); then
    say 'Going on with an interrupted run, which refreshed %d of them (--fresh does them all)\n' "${#refreshed[@]}"
  fi
}

# images_per_job: so many that GNU parallel's share of the time is small, so few that all cores end at about the same
# time and the progress bar moves.
images_per_job() {
  local most=16 jobs_per_core=10 cores
  cores=${jobs:-$(getconf _NPROCESSORS_ONLN 2>/dev/null || echo 1)}
  per_job=$((${#images[@]} / (cores * jobs_per_core)))
  ((per_job >= 1)) || per_job=1
  ((per_job <= most)) || per_job=$most
}

# start_parallel OPTION...: with nothing of the user's own settings, in the state's folder; $parallel is its process.
# The progress bar is for people.
start_parallel() {
  local bar=()
  if [[ $quiet == no && -t 2 ]]; then
    bar=(--bar)
  else
    exec 7>&2 2>>"$state/messages"
  fi
  # The shell of the jobs is this one, whatever the user's is; names come back unchanged from newer versions of rsync,
  # too, and are not quoted twice.
  (
    cd -- "$state" || exit
    export PARALLEL_SHELL=$BASH PARALLEL_HOME=$state/../.parallel RSYNC_OLD_ARGS=1
    unset PARALLEL
    exec parallel --plain --will-cite ${bar[@]+"${bar[@]}"} ${jobs:+--jobs "$jobs"} --joblog joblog \
      --termseq TERM,5000,KILL,100 "$@"
  ) </dev/null &
  parallel=$!
  [[ ${#bar[@]} -gt 0 ]] || exec 2>&7 7>&-
}

# wait_for_parallel: until it has ended, or a signal asks this run to.
wait_for_parallel() {
  interrupted=
  trap 'interrupted=${interrupted:-INT}' INT
  trap 'interrupted=${interrupted:-TERM}' TERM
  trap 'interrupted=${interrupted:-HUP}' HUP
  parallel_status=0
  wait "$parallel" || parallel_status=$?
  if [[ -n $interrupted ]]; then
    end_parallel
  fi
}

parallel_runs() {
  jobs -pr | grep -qx "$parallel"
}

# end_parallel: and its jobs. Old versions take the first signal for a wish to start no more of them.
end_parallel() {
  local patience=20
  kill -TERM "$parallel" 2>/dev/null
  while parallel_runs && ((patience-- > 0)); do
    sleep 0.1
  done
  kill -TERM "$parallel" 2>/dev/null
  while parallel_runs; do
    wait "$parallel" 2>/dev/null
  done
}

# write_list: the pictures for GNU parallel, each ended by a NUL.
write_list() {
  local image
  for image in "${images[@]}"; do
    printf '%s\0' "${refreshed[$image]+=}$image"
  done >"$state/images"
}

run_jobs() {
  local per_job
  # shellcheck disable=SC2154
  export VELMARCON_BATCH_LIB=$lib VELMARCON_BATCH_STATE=$state VELMARCON_BATCH_PROGRAM=$program VELMARCON_BATCH_FRONT=$$
  if [[ -n $hosts ]]; then
    run_on_hosts
    return
  fi
  images_per_job
  write_list
  start_parallel --ungroup --null -a images -n "$per_job" "$job_command"
  wait_for_parallel
}
