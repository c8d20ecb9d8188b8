# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Tells whether a DNG is one that velmarcon wrote, to its last byte. Goes by what the file says of its raw image: where
# it begins, how long it is, and that the file reaches to its end. So a file that was cut anywhere is found out.

# Bytes of every DNG that the camera writes; none of velmarcon's own is so short.
# shellcheck disable=SC2034  # who asks reads it
readonly camera_dng_size=10575296

readonly pair_width=3968 pair_height=2646 bytes_per_pixel=2
readonly tag_width=256 tag_height=257 tag_offset=273 tag_count=279 tag_sub_ifd=330
readonly little_endian_tiff='18761 42' # "II" and the number of the format

# load FILE OFFSET: fill $words with the KiB from there on, in numbers of 16 bits. It holds what is looked for of an
# IFD: entries stand in the order of their tags.
load() {
  local window=1024
  # shellcheck disable=SC2207  # numbers
  words=($(od -An -v -tu2 --endian=little -j "$2" -N "$window" -- "$1" 2>/dev/null))
}

# read_ifd AT: of the IFD that begins at that word, put the single values of its entries into the array $tags. Fails
# when the entries are cut. One loop without calls: it runs for every picture.
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

# read_ifd_at FILE OFFSET: the same; an IFD stands at an even offset.
read_ifd_at() {
  local loaded_bytes=$((2 * ${#words[@]}))
  if (($2 + 2 < loaded_bytes)) && read_ifd $(($2 / 2)); then
    return
  fi
  load "$1" "$2" && read_ifd 0
}

# complete_dng FILE KIND: whether the file is complete; KIND is "pair", or "camera" for a DNG of the camera's that was
# repaired. Otherwise $problem says what it is.
# shellcheck disable=SC2034  # who asks reads it
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
