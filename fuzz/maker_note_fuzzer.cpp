// SPDX-License-Identifier: MIT
// Parses the camera's maker note with both readers: the one for JPEGs, which looks at the tags, and the one
// for the camera's DNGs, which goes by position.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>
#include <vector>

#include "dng/maker_note_struct.h"
#include "exif/exif_info.h"
#include "exif/maker_note.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"
#include "fuzz/same_record.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

void ReadByTag(Bytes note) {
    EXIFInfo exif;
    exif.MakerNote.assign(note.begin(), note.end());
    const std::vector<std::uint8_t> before = exif.MakerNote;
    Require(exif.ParseMakerNote() == 0, "decoding a note always succeeds");
    Require(exif.MakerNote == before, "the note itself is unchanged");
    Require(exif.LensCodeBits.empty() ? exif.LensCode == 0 && exif.FrameSelector == 0
                                      : exif.LensCodeBits == maker_note::LensCodeText(exif.LensCode),
            "the text of the lens code matches its number");
    EXIFInfo again = exif;
    Require(again.ParseMakerNote() == 0 && SameRecord(again, exif), "decoding twice changes nothing");
}

/// The `size` bytes at `position` as a number, low byte first, read in the simplest way; 0 if they are not
/// all there.
std::uint32_t Plain(Bytes note, std::uint64_t position, std::uint64_t size) {
    if (position + size > note.size()) {
        return 0;
    }
    std::uint32_t value = 0;
    for (std::uint64_t i = size; i > 0; --i) {
        value = value * 256 + note[static_cast<std::size_t>(position + i - 1)];
    }
    return value;
}

/// Offset of the value field of entry `index`.
constexpr std::uint64_t Field(std::uint64_t index) {
    constexpr std::uint64_t first = 8 + 2 + 8;  // header, entry count, tag to count of an entry
    return first + 12 * index;
}

/// The position from which the offsets of entries 4 to 6 count: byte 0 if all of them lead past the table of
/// 15 entries.
std::uint64_t Base(Bytes note) {
    constexpr std::uint32_t table_end = 8 + 2 + 15 * 12 + 4;
    const std::uint32_t smallest =
        std::min({Plain(note, Field(4), 4), Plain(note, Field(5), 4), Plain(note, Field(6), 4)});
    return smallest >= table_end ? 0 : 8;
}

void RequirePair(Bytes note, std::uint64_t index, std::uint32_t offset,
                 const std::vector<std::int32_t>& pair) {
    Require(offset == Plain(note, Field(index), 4), "an offset is taken from its entry");
    Require(pair.size() == 2, "a pair has two halves");
    if (Field(index) + 4 <= note.size()) {
        const std::uint64_t position = Base(note) + offset;
        Require(std::bit_cast<std::uint32_t>(pair[0]) == Plain(note, position, 4) &&
                    std::bit_cast<std::uint32_t>(pair[1]) == Plain(note, position + 4, 4),
                "a pair is read at its offset");
    } else {
        Require(pair[0] == 0 && pair[1] == 0, "a pair without an entry is 0");
    }
}

void ReadByPosition(Bytes note) {
    const MakerNoteStruct values = DecodeMakerNote(ByteView(note));
    Require(values.entry_count == Plain(note, 8, 2), "the count is taken from the note");
    Require(values.user_profile == Plain(note, Field(0), 4), "entry 0 is the user profile");
    Require(values.serial_number == Plain(note, Field(1), 4), "entry 1 is the serial number");
    Require(values.white_balance == (Plain(note, Field(2), 4) & 0xFFFFU), "entry 2 is the white balance");
    Require(values.lens == Plain(note, Field(3), 4), "entry 3 is the lens");
    Require(values.LensCode() == (values.lens & 0xFFU) >> 2U, "the lens code is six bits of the lens");
    RequirePair(note, 4, values.external_brightness_offset, values.external_brightness);
    RequirePair(note, 5, values.measured_light_offset, values.measured_light);
    RequirePair(note, 6, values.approximate_f_number_offset, values.approximate_f_number);
    for (std::size_t i = 0; i < values.further.size(); ++i) {
        Require(values.further.at(i) == Plain(note, Field(7 + i), 4), "the other entries follow");
    }
}

}  // namespace

void FuzzInput(std::span<const std::uint8_t> bytes) {
    ReadByTag(bytes);
    ReadByPosition(bytes);
}
