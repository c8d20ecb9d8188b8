# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Completion of velmarcon-batch's options and their values, for bash. Behind "--" stand velmarcon's own options, but for
# those that this command gives itself.

# Whether "--" stands before the word that is completed.
_velmarcon_batch_behind_dashes() {
  local i
  for ((i = 1; i < COMP_CWORD; i++)); do
    [[ ${COMP_WORDS[i]} != -- ]] || return 0
  done
  return 1
}

_velmarcon_batch() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words
  COMPREPLY=()
  words='-o --output -j --jobs --hosts --from0 --newest-first --fresh --rename --keep-time --accept-damaged --anyway'
  words+=' --no-verify --verify --checksums -n --dry-run -q --quiet --json --notify --state -h --help --version --'
  if _velmarcon_batch_behind_dashes; then
    words='-v -r -p -b -l -c -s -st -sb'
  elif [[ $previous == --hosts ]]; then
    mapfile -t COMPREPLY < <(compgen -A hostname -- "$current")
    return
  elif [[ $previous == @(-j|--jobs) ]]; then
    return
  elif [[ $previous == @(--from0|--json) ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
    return
  elif [[ $current != -* || $previous == @(-o|--output|--state) ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
    return
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}

complete -F _velmarcon_batch velmarcon-batch
