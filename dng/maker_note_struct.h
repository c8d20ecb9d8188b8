// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_MAKER_NOTE_STRUCT_H
#define VELMARCON_DNG_MAKER_NOTE_STRUCT_H

#include <array>
#include <cstdint>
#include <vector>

#include "base/byte_view.h"

/// The values of the maker note in a camera DNG. They are read by position, since the camera writes the
/// entries in a fixed order. A value that lies outside the note is 0.
struct MakerNoteStruct {
    std::uint16_t entry_count = 0;
    std::uint32_t user_profile = 0;
    std::uint32_t serial_number = 0;  ///< of the camera
    std::uint16_t white_balance = 0;
    std::uint32_t lens = 0;  ///< low 8 bits: 6-bit lens code, 2-bit frame selector

    // Numerator and denominator, and the offset in the entry. A pair without an offset is 0/0.
    std::uint32_t external_brightness_offset = 0;
    std::vector<std::int32_t> external_brightness;
    std::uint32_t measured_light_offset = 0;
    std::vector<std::int32_t> measured_light;
    std::uint32_t approximate_f_number_offset = 0;
    std::vector<std::int32_t> approximate_f_number;

    /// Temperature, colour temperature, UV/IR correction, four versions, image number.
    std::array<std::uint32_t, 8> further = {};

    /// The lens code: 6 bits; 0 means that the camera saw no coded lens.
    std::uint8_t LensCode() const;
};

/// Decodes the bytes of a MakerNote tag. The offsets of the pairs count from the note's first byte if all of
/// them are at least 194, where the table of fifteen entries ends; otherwise they count from byte 8.
MakerNoteStruct DecodeMakerNote(ByteView note);

#endif  // VELMARCON_DNG_MAKER_NOTE_STRUCT_H
