# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Checks whether velmarcon wrote a DNG and wrote all of it: the raw image, with the offset and length in the file's
# tags, must end where the file ends. This detects a file that was cut off at any point.

# The size in bytes of every camera DNG; velmarcon's own DNGs are all longer.
# shellcheck disable=SC2034  # the callers read it
readonly camera_dng_size=10575296

readonly pair_width=3968 pair_height=2646 bytes_per_pixel=2
readonly tag_width=256 tag_height=257 tag_offset=273 tag_count=279 tag_sub_ifd=330
readonly little_endian_tiff='18761 42' # "II" and the number of the format

# load FILE OFFSET: read the KiB at that offset into $words, as 16-bit numbers. That is enough for the entries that are
# needed from an IFD, since entries are in the order of their tags.
load() {
  local window=1024
  # shellcheck disable=SC2207  # numbers
  words=($(od -An -v -tu2 --endian=little -j "$2" -N "$window" -- "$1" 2>/dev/null))
}

# read_ifd AT: put the single values of the entries of the IFD at that word into the array $tags. Fails if the entries
# are cut off. It is one loop without calls, because it runs for every picture.
read_ifd() {
  local at=$(($1 + 1)) count=${words[$1]-0} short=3
  tags=()
  for (( ; count > 0; at += 6, count--)); do
    ((at + 6 <= ${#words[@]})) || return
    ((words[at] <= tag_sub_ifd)) || break
    if ((words[at + 2] == 1 && words[at + 3] == 0)); then
      tags[words[at]]=$((words[at + 1] == short ? words[at + 4] : words[at + 4] | words[at + 5] << 16))
    fi
  done
  ((${#tags[@]} > 0))
}

# read_ifd_at FILE OFFSET: read_ifd for the IFD at that offset of the file, which must be even.
read_ifd_at() {
  local loaded_bytes=$((2 * ${#words[@]}))
  if (($2 + 2 < loaded_bytes)) && read_ifd $(($2 / 2)); then
    return
  fi
  load "$1" "$2" && read_ifd 0
}

# complete_dng FILE KIND: whether the file is complete; KIND is "pair", or "camera" for a repaired DNG. If it is not,
# $problem says why.
# shellcheck disable=SC2034  # the callers read it
complete_dng() {
  local size
  problem="is no file"
  [[ -f $1 ]] || return
  problem="cannot be read"
  size=$(wc -c 2>/dev/null <"$1") || return
  problem="is no DNG"
  load "$1" 0
  [[ "${words[*]:0:2}" == "$little_endian_tiff" && ${#words[@]} -ge 4 ]] || return
  problem="is not complete"
  read_ifd_at "$1" $((words[2] | words[3] << 16)) || return
  if [[ -n ${tags[tag_sub_ifd]-} ]]; then
    read_ifd_at "$1" "${tags[tag_sub_ifd]}" || return
  fi
  problem="is not as velmarcon writes it"
  local width=${tags[tag_width]-0} height=${tags[tag_height]-0} offset=${tags[tag_offset]-0} length=${tags[tag_count]-0}
  ((offset > 0 && length > 0 && length == width * height * bytes_per_pixel)) || return
  [[ $2 != pair ]] || ((width == pair_width && height == pair_height)) || return
  problem="is not complete"
  ((offset + length <= size)) || return
  problem=
}
