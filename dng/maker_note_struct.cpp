// SPDX-License-Identifier: MIT
#include "dng/maker_note_struct.h"

#include <bit>

#include "exif/maker_note.h"
#include "exif/tiff_types.h"

namespace {

/// Steps from entry to entry and reads what stands in the value fields, whatever tag and type say.
class EntryWalk {
  public:
    explicit EntryWalk(ByteView note) : note_(note) {}

    std::uint16_t EntryCount() const { return Get<std::uint16_t>(maker_note::kHeaderSize); }

    template <std::unsigned_integral T>
    T Next() {
        const T value = Get<T>(field_);
        field_ += tiff::kEntrySize;
        return value;
    }

    /// The pair of SLONGs at the offset in the next value field, which is put into `offset`. Without that
    /// field both are 0.
    std::vector<std::int32_t> NextPair(std::uint32_t& offset) {
        const bool has_offset = note_.Holds(field_, sizeof(offset));
        offset = Next<std::uint32_t>();
        const std::uint64_t position = maker_note::kHeaderSize + offset;
        return has_offset ? std::vector{GetSigned(position), GetSigned(position + sizeof(std::int32_t))}
                          : std::vector<std::int32_t>(2);
    }

  private:
    template <std::unsigned_integral T>
    T Get(std::uint64_t offset) const {
        return note_.Get<T>(offset, true);
    }

    std::int32_t GetSigned(std::uint64_t offset) const {
        return std::bit_cast<std::int32_t>(Get<std::uint32_t>(offset));
    }

    ByteView note_;
    std::uint64_t field_ = maker_note::kHeaderSize + tiff::kCountSize + tiff::kValueInEntry;
};

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
    values.external_brightness = walk.NextPair(values.external_brightness_offset);
    values.measured_light = walk.NextPair(values.measured_light_offset);
    values.approximate_f_number = walk.NextPair(values.approximate_f_number_offset);
    for (std::uint32_t& value : values.further) {
        value = walk.Next<std::uint32_t>();
    }
    return values;
}
