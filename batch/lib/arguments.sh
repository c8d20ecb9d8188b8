# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The command line of velmarcon-batch.
# shellcheck disable=SC2034,SC2154  # the variables are shared by the files of this folder

usage() {
  cat <<'END'
Usage: velmarcon-batch [OPTION...] FOLDER... [-- VELMARCON-OPTION...]

Converts every Leica M8 picture in the folders and the folders below them: pairs of X.RAW and X.JPG, and the DNGs that
the camera itself wrote. Runs one velmarcon on each core. To continue an interrupted run, give the command again.

  -o, --output DIR   write the DNGs there, in the same tree of folders (default: next to the RAW files)
  -j, --jobs N       run N at a time (default: one per core)
      --hosts LIST   use other machines over ssh: [N/][USER@]HOST,... (":" is this machine)
      --fresh        with -r: convert all pictures, even those that an interrupted run has refreshed
  -n, --dry-run      list what would be done, and do nothing
  -q, --quiet        report only failures
      --state DIR    keep the job log, and what is needed to continue a run, there
  -h, --help         print this text
      --version      print the version

The options after -- are for velmarcon: -r, -p, -b, -l, -s and so on, but not -i, -o or -sd.

Exit status: 0 if every picture has a complete DNG, 1 if some do not, 2 for wrong usage, 3 if the work could not begin,
130 after Ctrl-C.
END
}

misused() {
  refuse "$status_usage" "$* (velmarcon-batch --help prints the usage)"
}

# check_velmarcon_options: check $velmarcon_options by velmarcon's rules: only the first letter after a dash counts
# (after -s also the second), and -b and -l may have a value.
check_velmarcon_options() {
  local option before=
  for option in ${velmarcon_options[@]+"${velmarcon_options[@]}"}; do
    case $option in
      -i* | -o*) misused "$option after --: velmarcon-batch itself names the input and the output of each velmarcon" ;;
      -sd*)
        misused "-sd makes the database of one camera from one dark exposure; many at once would overwrite each" \
          "other's. Run velmarcon itself with it, once, then this with -s"
        ;;
      -r*) refresh=yes ;;
      -*) ;;
      *) [[ $before == -[bl]* ]] || misused "'$option' after -- is neither an option nor the value of one" ;;
    esac
    before=$option
  done
}

# check_spelling: run the installed velmarcon once to see whether it has remarks on $velmarcon_options. As its input is
# not a picture, it does nothing else. Otherwise the remarks would be printed for each picture, and nobody would read
# them.
check_spelling() {
  local remarks
  ((${#velmarcon_options[@]} > 0)) || return 0
  remarks=$("$program" -i /dev/null "${velmarcon_options[@]}" 2>&1 >/dev/null |
    grep -E ': ignored|: read as |: this code adds no lens data') || return 0
  refuse "$status_usage" "velmarcon has remarks on the options after --:"$'\n'"$remarks"
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
      -?*) misused "unknown option $1; velmarcon's own options go after --" ;;
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
