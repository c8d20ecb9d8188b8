# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The command line of velmarcon-batch.
# shellcheck disable=SC2034,SC2154  # the variables are shared by the files of this folder

usage() {
  cat <<'END'
Usage: velmarcon-batch [OPTION...] FOLDER... [-- VELMARCON-OPTION...]

Converts every Leica M8 picture in the folders and the folders below them: pairs of X.RAW and X.JPG, and the DNGs that
the camera itself wrote. Runs one velmarcon on each core. A second call goes on where an interrupted one stopped.

  -o, --output DIR   write the DNGs there, in folders as the pictures lie; without it: beside the RAW files
  -j, --jobs N       run N at a time; without it: one on each core
      --hosts LIST   have other machines do it, over ssh: [N/][USER@]HOST,... (this one is called :)
      --fresh        with -r: do all pictures, also those that an interrupted run has refreshed
  -n, --dry-run      list what would be done, and do nothing
  -q, --quiet        tell of failures only
      --state DIR    keep the job log and what a run needs to go on there
  -h, --help         this text
      --version      the version

What stands behind -- is for velmarcon: -r, -p, -b, -l, -s and so on, but neither -i nor -o nor -sd.

Status: 0 when every picture has a complete DNG, 1 when some have none, 2 for wrong usage, 3 when the work could not
begin, 130 after Ctrl-C.
END
}

misused() {
  refuse "$status_usage" "$* (velmarcon-batch --help tells the usage)"
}

# check_velmarcon_options: look at $velmarcon_options as velmarcon will: of a word with a dash only the first letter
# counts (of -s the second, too), and -b and -l may have a value.
check_velmarcon_options() {
  local option before=
  for option in ${velmarcon_options[@]+"${velmarcon_options[@]}"}; do
    case $option in
      -i* | -o*) misused "$option behind --: the input and the output of each velmarcon are given to it from here" ;;
      -sd*)
        misused "-sd makes the database of one camera from one dark exposure; many at once would overwrite each" \
          "other's. Run velmarcon itself with it, once, then this with -s"
        ;;
      -r*) refresh=yes ;;
      -*) ;;
      *) [[ $before == -[bl]* ]] || misused "'$option' behind -- is no option, nor the value of one" ;;
    esac
    before=$option
  done
}

# check_spelling: the installed velmarcon says what it would pass over of $velmarcon_options. With an input that is no
# picture it does nothing else. Nobody would read that once for each picture.
check_spelling() {
  local remarks
  ((${#velmarcon_options[@]} > 0)) || return 0
  remarks=$("$program" -i /dev/null "${velmarcon_options[@]}" 2>&1 >/dev/null |
    grep -E ': ignored|: read as |: this code adds no lens data') || return 0
  refuse "$status_usage" "what stands after -- is not as velmarcon wants it:"$'\n'"$remarks"
}

# read_arguments ARGUMENT...
read_arguments() {
  output=
  output_given=no
  jobs=
  hosts=
  fresh=no
  dry_run=no
  quiet=no
  refresh=no
  state_parent=
  folders=()
  velmarcon_options=()
  while (($# > 0)); do
    case $1 in
      --output=* | --jobs=* | --hosts=* | --state=*) set -- "${1%%=*}" "${1#*=}" "${@:2}" ;;
      -[oj]?*) set -- "${1:0:2}" "${1:2}" "${@:2}" ;;
    esac
    case $1 in
      -o | --output | -j | --jobs | --hosts | --state)
        [[ $# -gt 1 && -n $2 ]] || misused "$1 needs a value"
        set_value "$1" "$2"
        shift
        ;;
      --fresh) fresh=yes ;;
      -n | --dry-run) dry_run=yes ;;
      -q | --quiet) quiet=yes ;;
      -h | --help) usage; exit 0 ;;
      --version) printf 'velmarcon-batch %s\n' "$(version)"; exit 0 ;;
      --delete*)
        misused "there is no $1: originals are deleted by hand, and only after velmarcon-batch has ended with" \
          "status 0. A picture cannot be taken again"
        ;;
      --) shift; velmarcon_options=("$@"); break ;;
      -?*) misused "unknown option $1; velmarcon's own options stand behind --" ;;
      *) folders+=("$1") ;;
    esac
    shift
  done
  ((${#folders[@]} > 0)) || misused "no folder given"
  check_velmarcon_options
}

# set_value OPTION VALUE
set_value() {
  case $1 in
    -o | --output) output=$2 output_given=yes ;;
    -j | --jobs)
      [[ $2 =~ ^[1-9][0-9]{0,3}$ ]] || misused "$1 needs a number from 1 on, not '$2'"
      jobs=$2
      ;;
    --hosts) hosts=$2 ;;
    --state) state_parent=$2 ;;
  esac
}
