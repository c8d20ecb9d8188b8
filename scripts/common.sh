# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The scripts in this folder source this file for strict mode, messages and presets. Sourcing it makes the root of the
# repository ($top) the current folder; $called_from keeps the caller's.

set -euo pipefail
unset CDPATH

# shellcheck disable=SC2034  # read by the scripts that take paths
called_from=$PWD
top=$(dirname -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")")
cd -- "$top"

# Set by the scripts that have -v, to show what compilers and ctest print.
verbose=

say() {
  printf '%s\n' "$*"
}

# fail MESSAGE...: print the message after the script's name, and exit with status 1.
fail() {
  printf '%s: %s\n' "$(basename -- "$0")" "$*" >&2
  exit 1
}

# usage: print the comment at the head of the script as its usage text, in lines that fit a terminal. The comment begins
# with "NAME ARGUMENTS: " on the third line; lines that begin with a blank stay as they are.
usage() {
  awk -v width=79 -v folder="$(basename -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[-1]}")")")" '
    function end_line() { if (line != "") print line; line = "" }
    function put(text, words, number, i) {
      number = split(text, words, " ")
      for (i = 1; i <= number; ++i) {
        if (line != "" && length(line) + 1 + length(words[i]) > width) end_line()
        line = line (line == "" ? "" : " ") words[i]
      }
    }
    NR <= 2 { next }
    !/^#/ || /^# shellcheck/ { exit }
    { sub(/^# ?/, "") }
    NR == 3 {
      colon = index($0, ": ")
      print "usage: " folder "/" substr($0, 1, colon - 1) "\n"
      $0 = toupper(substr($0, colon + 2, 1)) substr($0, colon + 3)
    }
    /^( |$)/ { end_line(); print; next }
    { put($0) }
    END { end_line() }' "${BASH_SOURCE[-1]}"
}

# misused MESSAGE...: print what is wrong with the arguments, and the usage text; exit with status 2.
misused() {
  {
    printf '%s: %s\n\n' "$(basename -- "$0")" "$*"
    usage
  } >&2
  exit 2
}

# at_most NUMBER [ARGUMENT...]: refuse arguments that look like options, and more than NUMBER arguments.
at_most() {
  local most=$1 argument
  shift
  for argument; do
    [[ $argument != -* ]] || misused "unknown option: $argument"
  done
  [[ $# -le $most ]] || misused "too many arguments: ${*:most + 1}"
}

# Every script has -h and --help.
for argument; do
  case $argument in
    -h | --help) usage; exit 0 ;;
  esac
done
unset argument

# cached VARIABLE BUILD_FOLDER: print the value of an internal variable in CMake's cache.
cached() {
  sed -n "s/^$1:INTERNAL=//p" "$2/CMakeCache.txt"
}

# CMake refuses a build folder whose cache belongs to another place, because the checkout was moved or copied, or to
# another generator. Such a folder holds nothing worth keeping.
drop_foreign_build() {
  local build=build/$1
  [[ -f $build/CMakeCache.txt ]] || return 0
  [[ $(cached CMAKE_HOME_DIRECTORY "$build") -ef $top &&
    $(cached CMAKE_CACHEFILE_DIR "$build") -ef $build &&
    $(cached CMAKE_GENERATOR "$build") == Ninja ]] && return 0
  say "$build was configured elsewhere or differently; starting over"
  rm -rf -- "$build"
}

# quietly TITLE COMMAND...: print the title and run the command. Its output is shown only if it fails, or if $verbose is
# set; on a terminal, ninja's current step ("[12/273]") is shown meanwhile.
quietly() {
  local log status=0
  say "$1"
  if [[ -n $verbose ]]; then
    "${@:2}"
    return
  fi
  log=$(mktemp)
  if [[ -t 1 ]]; then
    "${@:2}" 2>&1 | tee -- "$log" | show_steps || status=$?
  else
    "${@:2}" >"$log" 2>&1 || status=$?
  fi
  [[ $status -eq 0 ]] || cat -- "$log" >&2
  rm -f -- "$log"
  return "$status"
}

# show_steps: show only the step number of ninja's lines on stdin, always in the same place.
show_steps() {
  local line
  while IFS= read -r line; do
    [[ ! $line =~ ^\[[0-9]+/[0-9]+\] ]] || printf '\r  %s ' "${BASH_REMATCH[0]}"
  done
  printf '\r%20s\r' ''
}

# configure_preset PRESET: configure build/PRESET.
configure_preset() {
  drop_foreign_build "$1"
  cmake --preset "$1"
}

# build_preset PRESET [TARGET...]: configure build/PRESET and build the targets there (default: all).
build_preset() {
  quietly "Configuring build/$1" configure_preset "$1"
  quietly "Building in build/$1" cmake --build --preset "$1" --parallel "$(nproc)" ${2+--target "${@:2}"}
}

# read_test_arguments [ARGUMENT...]: set $verbose, and $arguments to the options of ctest. ctest itself would ignore
# unknown options and run every test.
read_test_arguments() {
  while [[ $# -gt 0 ]]; do
    case $1 in
      -v) verbose=yes ;;
      -R | -E | -L | -LE | -I | -j | --repeat)
        [[ $# -ge 2 ]] || misused "$1 needs a value"
        arguments+=("$1" "$2")
        shift
        ;;
      -j[0-9]* | -N | -V | --rerun-failed | --stop-on-failure) arguments+=("$1") ;;
      *) misused "unknown argument: $1" ;;
    esac
    shift
  done
}

# run_tests PRESET [CTEST ARGUMENT...]: run the preset's tests, print one line for each that fits a terminal, and say
# how many were skipped and why. With $verbose set, the lines are ctest's own. The exit status is ctest's.
run_tests() {
  local status=0 records=build/$1/Testing
  mkdir -p -- "$records"
  rm -f -- "$records/Temporary/LastTest.log" "$records/printed"
  local call=(ctest --preset "$1" --no-tests=error -j2 --output-log "$records/printed" "${@:2}")
  if [[ -n $verbose ]]; then
    "${call[@]}" || status=$?
  else
    "${call[@]}" 2>&1 | short_lines || status=$?
  fi
  [[ ! -f $records/Temporary/LastTest.log ]] ||
    skipped_tests "$records/printed" "$records/Temporary/LastTest.log" | fold -s -w 79
  return "$status"
}

# short_lines: print ctest's output, from stdin, with short lines for the single tests. The output of a failed test
# stays as it is, and so does its name in the list at the end.
short_lines() {
  local line name heading=
  local ended='^ *([0-9]+/[0-9]+) Test +#[0-9]+: (.*[^ .]) \.*(\*\*\*| +)([A-Z][A-Za-z: ]*[a-z]) +([0-9.]+) sec'
  local listed='^[[:space:]]+[0-9]+ - (.*) \(([A-Za-z ]+)\)'
  while IFS= read -r line; do
    if [[ $line =~ ^\ +Start\ +[0-9]+:\  ]]; then
      continue
    elif [[ $line =~ $ended ]]; then
      name=${BASH_REMATCH[2]%%  #*}
      [[ ${#name} -le 50 ]] || name=${name:0:24}...${name: -23}
      printf '%9s %-8.8s %6.6s s  %s\n' "${BASH_REMATCH[1]}" "${BASH_REMATCH[4]%%:*}" "${BASH_REMATCH[5]}" "$name"
    elif [[ $line =~ $listed ]]; then
      [[ ${BASH_REMATCH[2]} != Skipped ]] || continue # skipped_tests prints them
      printf '%s  %s (%s)\n' "$heading" "${BASH_REMATCH[1]%%  #*}" "${BASH_REMATCH[2]}"
      heading=
    elif [[ $line == 'The following tests did not run:' ]]; then
      heading=$line$'\n'
    else
      printf '%s\n' "$line"
    fi
  done
}

# skipped_tests PRINTED LOG: print how many tests were skipped, from ctest's output, and why, from its log of the tests'
# output: GoogleTest prints the reason after "Skipped", our scripts after "SKIPPED: ".
skipped_tests() {
  awk '
    FNR == NR {
      if (/^[[:space:]]+[0-9]+ - .* \(Skipped\)/) {
        sub(/^[[:space:]]+[0-9]+ - /, "")
        sub(/ \(Skipped\).*/, "")
        skipped[$0] = "no reason given"
        ++number
      }
      next
    }
    / Testing: / { name = $0; sub(/^.* Testing: /, "", name); wanted = 0 }
    !(name in skipped) { next }
    /^\[  SKIPPED \]/ { wanted = 0 }
    wanted { skipped[name] = skipped[name] (skipped[name] == "" ? "" : " ") $0 }
    /: Skipped$/ { wanted = 1; skipped[name] = "" }
    sub(/^SKIPPED: /, "") { skipped[name] = $0 }
    END {
      if (!number) print "No test was skipped."
      else print number (number == 1 ? " test was" : " tests were") " skipped:"
      for (name in skipped) ++tests[skipped[name]]
      for (reason in tests) printf "  %3d  %s\n", tests[reason], reason
    }' "$1" "$2"
}

# version: print the version, which is only in CMakeLists.txt.
version() {
  sed -n 's/^  VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt
}

# has_git: whether this is a checkout, and git is installed and willing to read it.
has_git() {
  [[ -e .git ]] && git rev-parse --quiet --verify HEAD >/dev/null 2>&1
}

# source_date: print when these sources were last changed, in seconds since 1970: as the caller says, or the time of the
# last commit or, in a copy without git, of the newest file. All packed files get this time, so that builds repeat.
source_date() {
  if [[ -n ${SOURCE_DATE_EPOCH-} ]]; then
    echo "$SOURCE_DATE_EPOCH"
  elif has_git; then
    git log -1 --format=%ct
  else
    source_files | xargs -0 stat -c %Y -- | sort -n | tail -n 1
  fi
}

# source_files: print the files of the sources, each ending in a NUL: the tracked files or, in a copy without git, all
# files outside the folders that builds and the demo make.
source_files() {
  if has_git; then
    git ls-files -z
  else
    find . \( -path './build*' -o -path ./demo -o -path ./.git \) -prune -o ! -type d -printf '%P\0'
  fi
}
