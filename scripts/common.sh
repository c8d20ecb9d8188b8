# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Shared by the scripts of this folder, which source it: strict mode, messages, and the handling of presets.
# Sourcing it makes the repository root ($top) the current folder; $called_from keeps the caller's.

set -euo pipefail
unset CDPATH

# shellcheck disable=SC2034  # read by the scripts that take paths
called_from=$PWD
top=$(dirname -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")")
cd -- "$top"

say() {
  printf '%s\n' "$*"
}

# fail MESSAGE...: print the message, prefixed with the script's name, and end with status 1.
fail() {
  printf '%s: %s\n' "$(basename -- "$0")" "$*" >&2
  exit 1
}

# cached VARIABLE BUILD_FOLDER: the value CMake keeps for an internal variable.
cached() {
  sed -n "s/^$1:INTERNAL=//p" "$2/CMakeCache.txt"
}

# CMake refuses a build folder whose cache belongs to another place, as after the checkout was moved or copied,
# or to another generator. Such a folder holds nothing worth keeping.
drop_foreign_build() {
  local build=build/$1
  [[ -f $build/CMakeCache.txt ]] || return 0
  [[ $(cached CMAKE_HOME_DIRECTORY "$build") -ef $top &&
    $(cached CMAKE_CACHEFILE_DIR "$build") -ef $build &&
    $(cached CMAKE_GENERATOR "$build") == Ninja ]] && return 0
  say "$build was configured elsewhere or in another way; starting it afresh"
  rm -rf -- "$build"
}

# configure_preset PRESET: configure build/PRESET.
configure_preset() {
  drop_foreign_build "$1"
  cmake --preset "$1"
}

# build_preset PRESET [TARGET...]: configure build/PRESET and build the targets there (all without any).
build_preset() {
  configure_preset "$1"
  cmake --build --preset "$1" --parallel "$(nproc)" ${2+--target "${@:2}"}
}

# version: the version, which only CMakeLists.txt has.
version() {
  sed -n 's/^  VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt
}

# has_git: whether this is a checkout, and git is there and willing to look at it.
has_git() {
  [[ -e .git ]] && git rev-parse --quiet --verify HEAD >/dev/null 2>&1
}

# source_date: when these sources were last changed, in seconds since 1970; what the caller says, or the last commit, or,
# in a copy without git, the newest file of it. Everything that is packed bears this time, so that it can be made again.
source_date() {
  if [[ -n ${SOURCE_DATE_EPOCH-} ]]; then
    echo "$SOURCE_DATE_EPOCH"
  elif has_git; then
    git log -1 --format=%ct
  else
    source_files | xargs -0 stat -c %Y -- | sort -n | tail -n 1
  fi
}

# source_files: the files of the sources, each ending in a NUL: the tracked ones, or, in a copy without git, all outside
# the folders that builds and the demo make.
source_files() {
  if has_git; then
    git ls-files -z
  else
    find . \( -path './build*' -o -path ./demo -o -path ./.git \) -prune -o ! -type d -printf '%P\0'
  fi
}
