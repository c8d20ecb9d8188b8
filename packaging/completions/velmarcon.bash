# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Completion of velmarcon's options and their values, for bash.

# The codes of the lenses in the user's own database.
_velmarcon_lens_codes() {
  local folder database
  folder=$(velmarcon --where 2>/dev/null) || return
  database=$folder/lensdb.ini
  [[ -r $database ]] && sed -n 's/^\[\([01]\{6\}\)\].*/\1/p' "$database"
}

# Folders, and files that -i takes.
_velmarcon_images() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(
    compgen -d -- "$1"
    compgen -f -X '!*.@(RAW|DNG)' -- "$1"
  )
}

_velmarcon() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} extglob
  COMPREPLY=()
  extglob=$(shopt -p extglob)
  shopt -s extglob
  case $previous in
    -i) _velmarcon_images "$current" ;;
    -o)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      ;;
    -l) mapfile -t COMPREPLY < <(compgen -W "$(_velmarcon_lens_codes)" -- "$current") ;;
  esac
  if [[ ${#COMPREPLY[@]} -eq 0 && $previous != -[io] ]]; then
    local words='-i -o -v -r -p -b -l -c -s -sd -st -sb'
    [[ $COMP_CWORD -gt 1 ]] || words+=' --help --version --where'
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
  $extglob
}

complete -F _velmarcon velmarcon
