# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What a run leaves for the one after it, in a folder that belongs to one command: the same folders, output folder and
# velmarcon options. There are
#
#   joblog         of GNU parallel
#   report         every picture and what became of it, to be read
#   records/       the same, as it comes in, for the run after an interrupted one; gone when a run came to its end
#   refreshed      pictures that interrupted runs have refreshed
#   messages       what parallel, ssh and rsync said
#   command, folders, options, images    of this run
# shellcheck disable=SC2034,SC2154  # the variables are shared by the files of this folder

# command_text: what makes this the same command as another.
command_text() {
  printf '%s\0' "$output_given" "${roots[@]}" '>' "${outs[@]}" -- ${velmarcon_options[@]+"${velmarcon_options[@]}"}
}

# open_state: make the folder, put its path into $state, and keep other runs of this command out of it.
open_state() {
  local parent=$state_parent key sum path
  [[ -n $parent ]] || parent=${XDG_STATE_HOME:-${HOME-}/.local/state}/velmarcon-batch
  [[ $parent == /* ]] || parent=$PWD/$parent
  sum=$(command_text | cksum)
  key=${sum/ /-}
  (umask 077 && mkdir -p -- "$parent/$key") ||
    refuse "$status_not_begun" "the folder of the job log cannot be made; name another one with --state"
  canonical "$parent/$key" || refuse "$status_not_begun" "$parent/$key cannot be entered"
  state=$path
  lock_state
  if ! command_text | cmp -s - "$state/command"; then
    rm -rf -- "$state/records" "$state/refreshed"
    command_text >"$state/command" || refuse "$status_not_begun" "nothing can be written to $state"
  fi
}

# lock_state: until this run and all that it started have ended. One that was killed takes a moment to do so.
lock_state() {
  local patience=5
  exec 9>"$state/lock" || refuse "$status_not_begun" "nothing can be written to $state"
  if type -P flock >/dev/null; then
    flock -w "$patience" 9 || refuse "$status_not_begun" "this command is being run already"
  fi
}

# read_records FUNCTION: calls it with verdict, picture and text of each record. A record that a power cut or a kill
# left half-written is passed over.
read_records() {
  local verdict image text file
  for file in "$state"/records/*; do
    [[ -f $file ]] || continue
    while IFS= read -r -d '' verdict && IFS= read -r -d '' image && IFS= read -r -d '' text; do
      "$1" "$verdict" "$image" "$text"
    done <"$file"
  done
}

keep_refreshed() {
  [[ $1 != converted ]] || printf '%s\0' "$2"
}

# begin_records: after an interrupted run remember what it has refreshed, if that matters; then start anew.
begin_records() {
  local image
  declare -gA refreshed=()
  interrupted_before=no
  [[ ! -d $state/records ]] || interrupted_before=yes
  if [[ $fresh == yes || $refresh == no || $interrupted_before == no ]]; then
    rm -f -- "$state/refreshed"
  else
    read_records keep_refreshed >>"$state/refreshed"
    while IFS= read -r -d '' image; do
      refreshed[$image]=1
    done <"$state/refreshed"
  fi
  [[ ! -f $state/joblog ]] || mv -f -- "$state/joblog" "$state/joblog.previous"
  rm -rf -- "$state/records"
  if ! mkdir -- "$state/records" || ! write_run; then
    refuse "$status_not_begun" "nothing can be written to $state"
  fi
}

# write_run: what the jobs read.
write_run() {
  local index
  for index in "${!roots[@]}"; do
    printf '%s\0%s\0' "${roots[index]}" "${outs[index]}"
  done >"$state/folders" &&
    printf '%s\0' ${velmarcon_options[@]+"${velmarcon_options[@]}"} >"$state/options" &&
    : >"$state/messages"
}

# end_records: nothing is left to go on with.
end_records() {
  rm -rf -- "$state/records" "$state/refreshed"
}
