// SPDX-License-Identifier: MIT
#include "dng/maker_note_struct.h"

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <optional>

#include "exif/maker_note.h"
#include "tiff/entry.h"

namespace {

/// Offset of a value, counted from the note's base.
struct Offset {
    bool is_there = false;  ///< false if the note ends before the entry does
    std::uint32_t value = 0;
};

/// Steps from entry to entry and reads the value fields, regardless of tag, type and count.
class EntryWalk {
  public:
    explicit EntryWalk(ByteView note) : note_{note} {}

    std::uint16_t EntryCount() const { return note_.Get<std::uint16_t>(maker_note::kHeaderSize); }

    /// The number in the next value field; 0 if the note ends before the entry does.
    template <std::unsigned_integral T>
    T Next() {
        const auto entry = NextEntry();
        return entry ? entry->First<T>() : T{0};
    }

    /// The next value field as an offset.
    Offset NextOffset() {
        const auto entry = NextEntry();
        return entry ? Offset{true, entry->Offset()} : Offset{};
    }

  private:
    std::optional<tiff::Entry> NextEntry() {
        return tiff::ReadEntry(note_, tiff::EntryPosition(maker_note::kHeaderSize, index_++));
    }

    tiff::Block note_;
    std::uint64_t index_ = 0;
};

using Offsets = std::array<Offset, 3>;

/// The byte of the note from which `offsets` count: the first byte in the camera's DNGs, byte 8 in its JPEGs.
/// A DNG may contain the note of a JPEG. The values follow the table, so offsets that point past the table
/// when counted from the first byte do count from it.
std::uint64_t BaseOf(const Offsets& offsets) {
    constexpr std::uint64_t entries = 15;  // in the camera's notes, regardless of the count
    constexpr std::uint64_t table_end = maker_note::kHeaderSize + tiff::IFDSize(entries);
    const bool all_after_table = std::ranges::all_of(
        offsets, [](const Offset& offset) { return offset.is_there && offset.value >= table_end; });
    return all_after_table ? 0 : maker_note::kHeaderSize;
}

/// The two SLONGs at `offset` from `base`; each is 0 if it is not completely in the note, and both are 0 if
/// there is no offset.
std::vector<std::int32_t> PairAt(ByteView note, std::uint64_t base, Offset offset) {
    if (!offset.is_there) {
        return std::vector<std::int32_t>(2);
    }
    const std::uint64_t position = base + offset.value;
    const auto half = [&](std::uint64_t at) {
        return std::bit_cast<std::int32_t>(note.Get<std::uint32_t>(at, ByteOrder::kLittleEndian));
    };
    return {half(position), half(position + sizeof(std::int32_t))};
}

}  // namespace

std::uint8_t MakerNoteStruct::LensCode() const {
    return maker_note::LensCode(static_cast<std::uint8_t>(lens));
}

MakerNoteStruct DecodeMakerNote(ByteView note) {
    EntryWalk walk(note);
    MakerNoteStruct values;
    values.entry_count = walk.EntryCount();
    values.user_profile = walk.Next<std::uint32_t>();
    values.serial_number = walk.Next<std::uint32_t>();
    values.white_balance = walk.Next<std::uint16_t>();
    values.lens = walk.Next<std::uint32_t>();
    const Offsets offsets = {walk.NextOffset(), walk.NextOffset(), walk.NextOffset()};
    const auto& [external_brightness, measured_light, approximate_f_number] = offsets;
    const std::uint64_t base = BaseOf(offsets);
    values.external_brightness_offset = external_brightness.value;
    values.external_brightness = PairAt(note, base, external_brightness);
    values.measured_light_offset = measured_light.value;
    values.measured_light = PairAt(note, base, measured_light);
    values.approximate_f_number_offset = approximate_f_number.value;
    values.approximate_f_number = PairAt(note, base, approximate_f_number);
    for (std::uint32_t& value : values.further) {
        value = walk.Next<std::uint32_t>();
    }
    return values;
}
