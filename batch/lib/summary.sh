# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What became of the pictures, and the status that tells it.
# shellcheck disable=SC2034,SC2154  # the variables are shared by the files of this folder

# quote TEXT: put it into $quoted as it is or, with control characters in it, as bash would have it quoted. For where a
# process for each picture would take too long.
quote() {
  quoted=$1
  [[ $1 != *[[:cntrl:]]* ]] || printf -v quoted '%q' "$1"
}

# shown TEXT: the same, printed.
shown() {
  local quoted
  quote "$1"
  printf '%s' "$quoted"
}

# number_of_pictures N
number_of_pictures() {
  local many=s
  (($1 != 1)) || many=
  printf '%d picture%s' "$1" "$many"
}

take_record() {
  verdicts[$2]=$1
  texts[$2]=$3
}

# count_verdicts: of every picture, with one line for each in the report; failures into $failures, too.
count_verdicts() {
  local image input dng out verdict text line quoted
  declare -gA verdicts=() texts=()
  converted=0 remarked=0 kept=0 failed=0 unreached=0
  failures=() remarks=()
  read_records take_record
  for image in ${images[@]+"${images[@]}"}; do
    set_places "$image"
    verdict=${verdicts[$image]-none}
    text=${texts[$image]-}
    case $verdict in
      converted) converted=$((converted + 1)) && [[ -z $text ]] || remarked=$((remarked + 1)) ;;
      kept) kept=$((kept + 1)) ;;
      failed) failed=$((failed + 1)) ;;
      none) unreached=$((unreached + 1)) && text='not reached' ;;
    esac
    quote "$input"
    line=$quoted
    quote "$text"
    line+=${quoted:+: $quoted}
    printf '%s: %s\n' "$verdict" "$line" >&6
    [[ $verdict != failed ]] || failures+=("$line")
    [[ $verdict != converted || -z $text ]] || remarks+=("$line")
  done 6>"$state/report"
}

# put_on_disk: whoever deletes originals now must not lose the DNGs to a power cut. Fails when the disk does.
put_on_disk() {
  local out existing=()
  for out in "${outs[@]}"; do
    [[ ! -d $out ]] || existing+=("$out")
  done
  ((${#existing[@]} == 0)) || sync -f -- "${existing[@]}" 2>>"$state/messages"
}

# tell_remarks: the first of them; a whole year may have the same one.
tell_remarks() {
  local remark most=10
  say '%d of the converted with a remark: see %s\n' "$remarked" "$(shown "$state/report")"
  for remark in "${remarks[@]:0:most}"; do
    say 'Remark: %s\n' "$remark"
  done
  ((remarked <= most)) || say '... and %d more\n' $((remarked - most))
}

tell() {
  local failure
  say '%s: %d converted, %d already there, %d failed' "$(number_of_pictures "${#images[@]}")" "$converted" "$kept" \
    "$failed"
  ((unreached == 0)) || say ', %d not reached' "$unreached"
  say '\n'
  ((remarked == 0)) || tell_remarks
  for failure in ${failures[@]+"${failures[@]}"}; do
    printf 'Failed: %s\n' "$failure"
  done
  if [[ -n $unread ]]; then
    printf 'Not all folders could be read:\n%s' "$unread"
  fi
}

# settle: the summary, and the end.
settle() {
  local status=0 signals=([1]=HUP [2]=INT [15]=TERM) number
  count_verdicts
  tell
  if [[ -n ${interrupted-} ]]; then
    printf 'Interrupted (%s). The same command goes on from here.\n' "$interrupted" >&2
    for number in "${!signals[@]}"; do
      [[ ${signals[number]} != "$interrupted" ]] || exit $((128 + number))
    done
  fi
  if ((${#images[@]} == 0)); then
    printf 'velmarcon-batch: no picture found: no .RAW and no DNG of the camera (names in capital letters)\n' >&2
    status=$status_some_failed
  fi
  if ((unreached > 0)); then
    printf 'velmarcon-batch: not reached: %s; the end of %s:\n' "$(number_of_pictures "$unreached")" \
      "$state/messages" >&2
    tail -n 5 -- "$state/messages" >&2
    exit "$status_some_failed"
  fi
  if ((failed > 0)) || [[ -n $unread ]]; then
    status=$status_some_failed
  fi
  if ! put_on_disk; then
    printf 'velmarcon-batch: the system could not write all DNGs to disk\n' >&2
    status=$status_some_failed
  fi
  end_records
  exit "$status"
}
