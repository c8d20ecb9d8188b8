# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Has other machines do the jobs, one picture to a job: GNU parallel takes the picture's files there by ssh and rsync,
# runs lib/convert beside them, and fetches the DNG, which rsync gives its name when all of it is here. Nothing needs to
# be installed there but velmarcon, bash, perl and rsync.
# shellcheck disable=SC2034,SC2154  # the variables are shared by the files of this folder

# Where a host keeps what it works on, below the home folder there: a folder for each command, and in it one for each
# run. What an interrupted run still has on its way then, such as the removal of a picture there, meets no other run's.
readonly host_folder=.cache/velmarcon-batch

# What a job runs, in this form by whatever shell there is. For jobs on this machine the environment has the folder.
# shellcheck disable=SC2016
readonly host_job_command='bash -c '\''exec bash "${VELMARCON_BATCH_LIB-.}/convert" "$@"'\'' convert'

# on_host LOGIN COMMAND: the command line there, by the shell there.
on_host() {
  env -u PARALLEL PARALLEL_HOME="$state/../.parallel" \
    parallel --plain --will-cite --nonall --sshlogin "$1" "$2" </dev/null 2>&1 9>&-
}

# The answer is "ready" and the number of cores, or what is missing. velmarcon is asked in an empty folder, because the
# program without its launcher would convert what it finds.
# shellcheck disable=SC2016
readonly host_question='bash -c '\''
  for program in rsync velmarcon; do
    type -P "$program" >/dev/null || { echo "no $program there"; exit; }
  done
  empty=$(mktemp -d) && cd "$empty" || { echo "no temporary folder there"; exit; }
  version=$(velmarcon --version </dev/null 2>&1) || version="another or one that is not installed"
  cd / && rmdir "$empty"
  [[ $version == "velmarcon $1" ]] || { echo "velmarcon there is $version, not $1"; exit; }
  rm -rf -- "$HOME/$2"
  echo "ready $(getconf _NPROCESSORS_ONLN)"
'\'' question'

# ask_hosts: every host whether it can do the work; the options for GNU parallel into $logins. A host that cannot would
# fail one picture after the other, faster than those that can convert them.
ask_hosts() {
  local entry login answer entries
  logins=()
  host_logins=()
  [[ -f $state/id ]] || printf '%s-%s%s%s' "$(uname -n | tr -cd 'A-Za-z0-9-')" "$RANDOM" "$RANDOM" "$$" >"$state/id"
  command_folder=$host_folder/$(<"$state/id")
  work_folder=$command_folder/$(date +%s)-$$
  IFS=, read -r -a entries <<<"$hosts"
  for entry in "${entries[@]}"; do
    login=$entry
    [[ ! $entry =~ ^[0-9]+/(.*) ]] || login=${BASH_REMATCH[1]}
    if [[ $login != : ]]; then
      type -P rsync ssh >/dev/null || refuse "$status_not_begun" "--hosts needs rsync and ssh (Debian: openssh-client)"
      answer=$(on_host "$login" "$host_question $(version) $command_folder")
      [[ $answer =~ (^|$'\n')'ready '([0-9]+)$ ]] ||
        refuse "$status_not_begun" "host $login: ${answer##*$'\n'}"
      [[ $entry != "$login" ]] || entry=${BASH_REMATCH[2]}/$login
      host_logins+=("$login")
    fi
    logins+=(--sshlogin "$entry")
  done
  ((${#logins[@]} > 0)) || misused "--hosts names no host"
}

# hand_over: what each host needs once, into $state/handed. The databases are those that velmarcon uses here.
hand_over() {
  local handed=$state/handed databases empty
  rm -rf -- "$handed" "$state/roots" "$state/outs"
  mkdir -p -- "$handed/data/velmarcon" "$state/roots" "$state/outs" && empty=$(mktemp -d) || return
  databases=$(cd -- "$empty" && "$program" --where </dev/null 2>/dev/null) || databases=$(dirname -- "$program")
  rmdir -- "$empty"
  # Without a lens database here there is none there either, be one installed or not.
  : >"$handed/data/velmarcon/lensdb.ini"
  cp -- "$lib/convert" "$lib/complete_dng.sh" "$state/options" "$handed" || return
  given=(convert complete_dng.sh options data/velmarcon/lensdb.ini)
  if [[ -f $databases/lensdb.ini ]]; then
    cp -- "$databases/lensdb.ini" "$handed/data/velmarcon" || return
  fi
  if [[ -f $databases/sensdb.ini ]]; then
    cp -- "$databases/sensdb.ini" "$handed/data/velmarcon" || return
    given+=(data/velmarcon/sensdb.ini)
  fi
  local index
  for index in "${!roots[@]}"; do
    mkdir -p -- "${outs[index]}" && ln -s -- "${roots[index]}" "$state/roots/$index" &&
      ln -s -- "${outs[index]}" "$state/outs/$index" || return
  done
}

# look_here_first: what is decided by a look at the files that are here gets its record at once.
look_here_first() {
  local image input dng out
  for image in "${images[@]}"; do
    set_places "$image"
    if [[ -e $dng || -L $dng || $input == *.DNG ]]; then
      [[ -n ${refreshed[$image]-} ]] && printf '=%s\0' "$image" || printf '?%s\0' "$image"
    fi
  done >"$state/images"
  [[ ! -s $state/images ]] || PARALLEL_SEQ=here xargs -0 bash "$lib/convert" <"$state/images"
}

settled_here() {
  settled[$2]=1
}

# write_host_list: for every other picture four names: its own, the JPEG's, the dark frame's, the DNG's. A file that is
# not there is stood in for by one that goes anyway. Also removes what a killed rsync left.
write_host_list() {
  local image input dng out base companion
  local -A settled=()
  read_records settled_here
  dark_frames=no
  for image in "${images[@]}"; do
    [[ -z ${settled[$image]-} ]] || continue
    set_places "$image"
    base=${image%.*}
    printf '%s\0' "$image"
    for companion in JPG BIA; do
      if [[ $input == *.RAW && -e ${input%.*}.$companion ]]; then
        printf '%s\0' "$base.$companion"
        [[ $companion == JPG ]] || dark_frames=yes
      else
        printf '%s\0' "$image"
      fi
    done
    printf '%s\0' "$base.DNG"
    [[ $interrupted_before == no ]] || rm -f -- "$out/.${dng##*/}."??????
  done >"$state/images"
}

# take_answers: records from the hosts; a DNG counts when it is here as it was there.
take_answers() {
  local verdict image text sum input dng out
  while IFS= read -r -d '' verdict && IFS= read -r -d '' image && IFS= read -r -d '' text && IFS= read -r -d '' sum; do
    if [[ $verdict == converted ]]; then
      set_places "$image"
      if [[ ! -f $dng || $(cksum <"$dng") != "$sum" ]]; then
        verdict=failed
        text='the DNG was made, but did not come back from the host'
      fi
    fi
    printf '%s\0%s\0%s\0' "$verdict" "$image" "$text"
  done >>"$state/records/hosts"
}

# run_on_hosts: -L sends what a link leads to; a DNG that was not made is no error of rsync's.
run_on_hosts() {
  local taker login dark=()
  hand_over || refuse "$status_not_begun" "nothing can be written to $state or to the output folder"
  look_here_first
  write_host_list
  interrupted=
  if [[ -s $state/images ]]; then
    [[ $dark_frames == no ]] || dark=(--transferfile 'roots/./{3}')
    rm -f -- "$state/answers"
    mkfifo -- "$state/answers" || refuse "$status_not_begun" "no pipe can be made in $state"
    take_answers <"$state/answers" &
    taker=$!
    # -I, because an older DNG may have the length of the new one, and be of the same second.
    export PARALLEL_RSYNC_OPTS='-rLDRIW --ignore-missing-args'
    start_parallel --null -a images -N 4 --retries 3 "${logins[@]}" --workdir "$work_folder" --cleanup \
      "${given[@]/#/--basefile=handed/./}" --transferfile 'roots/./{1}' --transferfile 'roots/./{2}' \
      ${dark[@]+"${dark[@]}"} --return 'outs/./{4}' "$host_job_command {1}" >"$state/answers" 9>&-
    wait_for_parallel
    wait "$taker"
  fi
  for login in ${host_logins[@]+"${host_logins[@]}"}; do
    on_host "$login" "rm -rf $command_folder; rmdir $host_folder" >/dev/null
  done
}
