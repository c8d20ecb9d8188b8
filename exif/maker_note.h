// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_MAKER_NOTE_H
#define VELMARCON_EXIF_MAKER_NOTE_H

#include <cstdint>
#include <string>

/// The camera's maker note: a header, then an IFD, which is little-endian whatever the byte order of the
/// file. Offsets of values count from the end of the header in the camera's JPEGs, and from the note's first
/// byte in its DNGs.
namespace maker_note {

constexpr std::uint64_t kHeaderSize = 8;  ///< bytes, not examined

constexpr unsigned int kFrameSelectorBits = 2;

/// The lens code in the lens byte: 6 bits; 0 means that the camera saw no coded lens.
constexpr std::uint8_t LensCode(std::uint8_t lens_byte) {
    return static_cast<std::uint8_t>(lens_byte >> kFrameSelectorBits);
}

/// The other two bits: the frame lines that the lens's bayonet selects.
constexpr std::uint8_t FrameSelector(std::uint8_t lens_byte) {
    return lens_byte & ((1U << kFrameSelectorBits) - 1U);
}

/// A lens code as six "0"/"1" characters, most significant first: the key of the lens database.
std::string LensCodeText(std::uint8_t lens_code);

}  // namespace maker_note

#endif  // VELMARCON_EXIF_MAKER_NOTE_H
