# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Tells whether a DNG is one that velmarcon wrote, to its last byte. Goes by what the file says of its raw image: where
# it begins, how long it is, and that the file reaches to its end. So a file that was cut anywhere is found out.

readonly pair_width=3968 pair_height=2646 bytes_per_pixel=2
readonly tag_width=256 tag_height=257 tag_offset=273 tag_count=279 tag_sub_ifd=330
readonly little_endian_tiff='73 73 42 0'

# load FILE OFFSET: fill $bytes with the 2 KiB from there on, which hold all IFDs of what velmarcon writes.
load() {
  local window=2048
  loaded_from=$2
  # shellcheck disable=SC2207  # numbers
  bytes=($(od -An -v -tu1 -j "$2" -N "$window" -- "$1" 2>/dev/null))
}

# number OFFSET LENGTH: put the little-endian number of 2 or 4 bytes into $value. Fails when it was not loaded.
number() {
  local at=$(($1 - loaded_from))
  ((at >= 0 && at + $2 <= ${#bytes[@]})) || return
  value=$((bytes[at] | bytes[at + 1] << 8))
  (($2 == 2)) || value=$((value | bytes[at + 2] << 16 | bytes[at + 3] << 24))
}

# read_ifd FILE OFFSET: put the single values of its entries into the array $tags. Fails when the IFD is cut.
read_ifd() {
  local offset=$2 entry count tag type short=3
  tags=()
  number "$offset" 2 || { load "$1" "$offset" && number "$offset" 2; } || return
  count=$value
  number $((offset + 2 + 12 * count - 4)) 4 || { load "$1" "$offset" && number $((offset + 2 + 12 * count - 4)) 4; } ||
    return
  for ((entry = offset + 2; count > 0; entry += 12, count--)); do
    number "$entry" 2 && tag=$value
    case $tag in
      "$tag_width" | "$tag_height" | "$tag_offset" | "$tag_count" | "$tag_sub_ifd")
        number $((entry + 2)) 2 && type=$value
        if number $((entry + 4)) 4 && ((value == 1)) && number $((entry + 8)) $((type == short ? 2 : 4)); then
          tags[tag]=$value
        fi
        ;;
    esac
  done
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
  [[ "${bytes[*]:0:4}" == "$little_endian_tiff" ]] && number 4 4 || return
  problem="is not complete"
  read_ifd "$1" "$value" || return
  if [[ -n ${tags[tag_sub_ifd]-} ]]; then
    read_ifd "$1" "${tags[tag_sub_ifd]}" || return
  fi
  problem="is not as velmarcon writes it"
  local width=${tags[tag_width]-0} height=${tags[tag_height]-0} offset=${tags[tag_offset]-0} length=${tags[tag_count]-0}
  ((offset > 0 && length > 0 && length == width * height * bytes_per_pixel)) || return
  [[ $2 != pair ]] || ((width == pair_width && height == pair_height)) || return
  problem="is not complete"
  ((offset + length <= size)) || return
  problem=
}
