// SPDX-License-Identifier: MIT
#include "exif/maker_note.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "base/byte_order.h"
#include "base/byte_view.h"
#include "exif/exif_info.h"
#include "tiff/entry.h"
#include "tiff/types.h"

namespace {

constexpr std::uint16_t kSerialNumberTag = 0x0303;
constexpr std::uint16_t kLensTag = 0x0310;
constexpr std::uint16_t kExternalBrightnessTag = 0x0311;
constexpr std::uint16_t kMeasuredLightTag = 0x0312;
constexpr std::uint16_t kApproximateFNumberTag = 0x0313;
constexpr std::uint16_t kRedLevelTag = 0x0322;
constexpr std::uint16_t kGreenLevelTag = 0x0323;
constexpr std::uint16_t kBlueLevelTag = 0x0324;

constexpr int kLensCodeLength = 6;

/// Reads the note's entries in order. Offsets count from the end of the header.
class NoteReader {
  public:
    explicit NoteReader(ByteView note) : block_{note, maker_note::kHeaderSize} {}

    /// The number of entries that the note states.
    std::uint64_t EntryCount() const { return block_.Get<std::uint16_t>(maker_note::kHeaderSize); }

    /// Entry `index`; std::nullopt if it does not lie in the note.
    std::optional<tiff::Entry> Entry(std::uint64_t index) const {
        return tiff::ReadEntry(block_, tiff::EntryPosition(maker_note::kHeaderSize, index));
    }

    /// The value of `entry`, which must be the next one; std::nullopt if the value does not lie in the note.
    std::optional<tiff::ValueBytes> Value(const tiff::Entry& entry) {
        // Only the low byte of the type counts. A value of unknown type has the size of the value before it.
        const auto type = static_cast<std::uint8_t>(entry.type);
        if (const std::uint32_t unit = UnitSize(type); unit != 0) {
            value_size_ = std::uint64_t{entry.count} * unit;
        }
        return tiff::ReadValue(block_, entry, value_size_);
    }

  private:
    /// Size in bytes of one value of `type`; 0 for an unknown type, of which UNDEFINED is one here.
    static constexpr std::uint32_t UnitSize(std::uint8_t type) {
        switch (type) {
            case tiff::kUndefined:
                return 0;
            case tiff::kFloat:
                return 4;
            case tiff::kDouble:
                return 8;
            default:
                return tiff::ElementSize(type);
        }
    }

    tiff::Block block_;
    std::uint64_t value_size_ = 0;
};

/// LONG number `position` of a value, counted from 0; bytes past the value's end count as 0.
std::uint32_t Long(std::span<const std::uint8_t> value, std::size_t position) {
    std::array<std::uint8_t, sizeof(std::uint32_t)> bytes = {};
    const std::size_t begin = std::min(position * bytes.size(), value.size());
    const std::size_t count = std::min(bytes.size(), value.size() - begin);
    std::copy_n(value.begin() + static_cast<std::ptrdiff_t>(begin), count, bytes.begin());
    return byte_order::GetLittle<std::uint32_t>(bytes);
}

Rational ToRational(std::span<const std::uint8_t> value) {
    return {Long(value, 0), Long(value, 1)};
}

float Ratio(Rational value) {
    return static_cast<float>(value.numerator) / static_cast<float>(value.denominator);
}

void StoreLens(std::uint8_t lens_byte, EXIFInfo& exif) {
    exif.FrameSelector = maker_note::FrameSelector(lens_byte);
    exif.LensCode = maker_note::LensCode(lens_byte);
    exif.LensCodeBits = maker_note::LensCodeText(exif.LensCode);
}

void Store(std::uint16_t tag, std::span<const std::uint8_t> value, EXIFInfo& exif) {
    switch (tag) {
        case kSerialNumberTag:
            exif.SerialNumber = Long(value, 0);
            break;
        case kLensTag:
            StoreLens(static_cast<std::uint8_t>(Long(value, 0)), exif);
            break;
        case kExternalBrightnessTag:
            exif.Mn0311 = ToRational(value);
            break;
        case kMeasuredLightTag:
            exif.Mn0312 = ToRational(value);
            break;
        case kApproximateFNumberTag:
            exif.Mn0313 = ToRational(value);
            break;
        case kRedLevelTag:
            exif.Mn0322 = ToRational(value);
            exif.Mn0322Ratio = Ratio(exif.Mn0322);
            break;
        case kGreenLevelTag:
            exif.Mn0323 = ToRational(value);
            exif.Mn0323Ratio = Ratio(exif.Mn0323);
            break;
        case kBlueLevelTag:
            exif.Mn0324 = ToRational(value);
            exif.Mn0324Ratio = Ratio(exif.Mn0324);
            break;
        default:
            break;
    }
}

}  // namespace

std::string maker_note::LensCodeText(std::uint8_t lens_code) {
    std::string text;
    for (int bit = kLensCodeLength; bit-- > 0;) {
        text += (lens_code >> bit & 1) != 0 ? '1' : '0';
    }
    return text;
}

int EXIFInfo::ParseMakerNote() {
    NoteReader reader{ByteView(MakerNote)};
    const std::uint64_t count = reader.EntryCount();
    for (std::uint64_t i = 0; i < count; ++i) {
        const auto entry = reader.Entry(i);
        if (!entry) {
            break;
        }
        if (const auto value = reader.Value(*entry)) {
            Store(entry->tag, value->get(), *this);
        }
    }
    return 0;
}
