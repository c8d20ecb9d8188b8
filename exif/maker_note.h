// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_MAKER_NOTE_H
#define VELMARCON_EXIF_MAKER_NOTE_H

#include <cstdint>
#include <string>

/// The camera's maker note: a header, then an IFD, little-endian whatever stands around it. The offsets of
/// values count from the end of the header in the camera's JPEGs, from its first byte in the camera's DNGs.
namespace maker_note {

constexpr std::uint64_t kHeaderSize = 8;  ///< bytes, not examined

constexpr unsigned int kFrameSelectorBits = 2;

/// The lens's bits of the lens byte: 6 of them; 0: the camera saw no coded lens.
constexpr std::uint8_t LensCode(std::uint8_t lens_byte) {
    return static_cast<std::uint8_t>(lens_byte >> kFrameSelectorBits);
}

/// The other bits: which frame lines the lens's bayonet selects.
constexpr std::uint8_t FrameSelector(std::uint8_t lens_byte) {
    return lens_byte & ((1U << kFrameSelectorBits) - 1U);
}

/// A lens code as six "0"/"1" characters, most significant first, the form that keys the lens database.
std::string LensCodeText(std::uint8_t lens_code);

}  // namespace maker_note

#endif  // VELMARCON_EXIF_MAKER_NOTE_H
