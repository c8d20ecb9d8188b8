# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Completion of velmarcon-calibrate's options and their values, for bash.

_velmarcon_calibrate() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()
  compopt -o filenames 2>/dev/null
  if [[ $previous == --report ]]; then
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
  elif [[ $previous == --database ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  elif [[ $current == -* && $previous != --flat ]]; then
    mapfile -t COMPREPLY < <(compgen -W \
      '--flat --database --report --dry-run --doubtful --check --help --version' -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -d -- "$current"; compgen -f -X '!*.RAW' -- "$current")
  fi
}

complete -F _velmarcon_calibrate velmarcon-calibrate
