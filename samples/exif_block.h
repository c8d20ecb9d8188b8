// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_EXIF_BLOCK_H
#define VELMARCON_SAMPLES_EXIF_BLOCK_H

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "samples/tiff_entry.h"

namespace samples {

constexpr std::uint32_t kExifHeaderSize = 6;  ///< "Exif" and two NULs, before the TIFF header

/// The payload of an APP1 segment (Exif 2.3, section 4.5): the Exif header, a TIFF header, IFD0, the EXIF IFD
/// and, for a thumbnail, IFD1.
struct ExifBlock {
    ByteOrder order = ByteOrder::kLittleEndian;
    std::vector<Entry> ifd0 = {};  ///< in file order; the ExifIFD entry is added when the block is serialised
    std::vector<Entry> exif = {};  ///< in file order
    bool with_exif_ifd = true;
    std::vector<Entry> ifd1 = {};  ///< empty: no IFD1; Serialize adds the offset of `thumbnail` as a SHORT
    std::vector<std::uint8_t> thumbnail = {};  ///< a JPEG file, at the end of the block

    // For damaged blocks: header fields that replace the correct values.
    std::array<std::uint8_t, kExifHeaderSize> header = {'E', 'x', 'i', 'f', 0, 0};
    std::optional<std::array<std::uint8_t, 2>> byte_order_mark = std::nullopt;  ///< default "II" or "MM"
    std::uint16_t magic = 42;
    std::optional<std::uint32_t> first_ifd_offset = std::nullopt;  ///< default 8
    /// Default: the actual offset of the EXIF IFD.
    std::optional<std::uint32_t> exif_ifd_offset = std::nullopt;
    std::optional<std::uint16_t> ifd0_count = std::nullopt;  ///< default: the number of entries
    std::optional<std::uint16_t> exif_count = std::nullopt;
};

/// The block's bytes: header, TIFF header, IFD0, its values, EXIF IFD, its values, IFD1, its values,
/// thumbnail. The ExifIFD pointer is inserted before the first IFD0 entry with a higher tag; if `ifd0`
/// already has such a pointer, it is written unchanged instead.
std::vector<std::uint8_t> Serialize(const ExifBlock& block);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_EXIF_BLOCK_H
