# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Which pictures there are, and where their DNGs go. A picture is named <number of its folder>/<path in that folder>.
# shellcheck disable=SC2034,SC2154  # the variables are shared by the files of this folder

# canonical FOLDER: put its path without links, "." and ".." into $path. Fails when it cannot be entered.
canonical() {
  local folder=$1
  [[ $folder == /* ]] || folder=./$folder
  path=$(cd -P -- "$folder" 2>/dev/null && pwd -P && printf x) || return
  path=${path%$'\nx'} # a name may end in line feeds, which $() would take away
  [[ $path != //* ]] || path=${path#/}
}

# lies_in FOLDER OTHER: whether the first is the second or below it; both canonical.
lies_in() {
  [[ $1/ == "${2%/}"/* ]]
}

# resolve_folders: the folders' canonical paths into $roots, and into $outs where their trees are mirrored.
resolve_folders() {
  local folder other path
  roots=()
  outs=()
  for folder in "${folders[@]}"; do
    [[ -d $folder ]] || misused "$(shown "$folder") is no folder"
    canonical "$folder" || misused "$(shown "$folder") cannot be entered"
    for other in ${roots[@]+"${roots[@]}"}; do
      if lies_in "$path" "$other" || lies_in "$other" "$path"; then
        misused "$(shown "$path") and $(shown "$other") have pictures in common"
      fi
    done
    roots+=("$path")
  done
  if [[ $output_given == no ]]; then
    outs=("${roots[@]}")
    return
  fi
  make_output
  place_outputs
}

# make_output: $output becomes a canonical path, and a folder unless this is a dry run.
make_output() {
  local path
  [[ $output == /* ]] || output=$PWD/$output
  if [[ $dry_run == no ]]; then
    mkdir -p -- "$output" || refuse "$status_not_begun" "the output folder cannot be made"
  fi
  if canonical "$output"; then
    output=$path
  fi
}

# place_outputs: one folder's tree goes right into the output folder; of several each gets a folder by its name.
place_outputs() {
  local root other
  if ((${#roots[@]} == 1)); then
    outs=("$output")
    return
  fi
  for root in "${roots[@]}"; do
    for other in ${outs[@]+"${outs[@]}"}; do
      [[ $other != "${output%/}/${root##*/}" ]] ||
        misused "several folders are called $(shown "${root##*/}"), and their DNGs would mix: call this once for" \
          "each, with another --output"
    done
    outs+=("${output%/}/${root##*/}")
  done
}

# set_places IMAGE: put the paths of a picture into $input and $dng, and the folder of the latter into $out.
set_places() {
  local index=${1%%/*} rel=${1#*/}
  input=${roots[index]%/}/$rel
  dng=${outs[index]%/}/${rel%.*}.DNG
  out=${dng%/*}
}

# find_images: every picture into $images, in the order of their names. What find complains of goes into $unread.
find_images() {
  images=()
  unread=
  local index
  for index in "${!roots[@]}"; do
    search_root "$index"
  done
}

# search_root INDEX: links to folders are not followed, so there are no circles; a link to a file is a file.
search_root() {
  local index=$1 root=${roots[$1]} prune=() name found errors
  local folder
  for folder in "$output" "${outs[@]}"; do
    if [[ -n $folder && -d $folder && $folder != "$root" ]] && lies_in "$folder" "$root"; then
      prune+=(-samefile "$folder" -prune -o)
      [[ $folder != "$output" ]] || say 'Not searched, being the output folder: %s\n' "$(shown "$folder")"
    fi
  done
  if ! errors=$(mktemp) || ! found=$(mktemp); then
    refuse "$status_not_begun" "no temporary file can be made"
  fi
  (cd -- "$root" && find . ${prune[@]+"${prune[@]}"} ! -type d \( -name '*.RAW' -o -name '*.DNG' \
    \( -size "${camera_dng_size}c" -o -type l \) \) -print0) >"$found" 2>"$errors" ||
    unread+="$root:"$'\n'"$(cat -- "$errors")"$'\n'
  while IFS= read -r -d '' name; do
    # Through a link velmarcon would search the whole folder; and a DNG has its length behind the link.
    if [[ -L $root/$name ]]; then
      [[ ! -d $root/$name ]] || continue
      [[ $name == *.RAW || $(wc -c 2>/dev/null <"$root/$name") -eq $camera_dng_size ]] || continue
    fi
    images+=("$index/${name#./}")
  done < <(sort -z -- "$found")
  rm -f -- "$errors" "$found"
}

# list_plan: what would be done, a line for each picture.
list_plan() {
  local image input dng out what line quoted
  for image in ${images[@]+"${images[@]}"}; do
    set_places "$image"
    what=convert
    if [[ -e $dng || -L $dng ]]; then
      what=keep
      [[ $refresh == no ]] || what=refresh
    fi
    [[ $what == refresh || ! $input -ef $dng ]] || what=refuse
    quote "$input"
    line="$what: $quoted"
    quote "$dng"
    printf '%s -> %s\n' "$line" "$quoted"
  done
  say '%s\n' "$(number_of_pictures "${#images[@]}")"
  if [[ -n $unread ]]; then
    printf '%s' "$unread" >&2
    return "$status_some_failed"
  fi
}
