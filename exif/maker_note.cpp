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

/// One entry whose value lies inside the note.
struct IFDTag {
    std::uint16_t tag = 0;
    std::span<const std::uint8_t> value;
};

/// Walks the note's entries in order.
class NoteReader {
  public:
    explicit NoteReader(ByteView note) : note_(note) {}

    /// The number of entries, without those that lie outside the note.
    std::uint64_t EntryCount() const {
        const std::uint64_t room = note_.size() - std::min(note_.size(), kFirstEntry);
        return std::min<std::uint64_t>(Get<std::uint16_t>(maker_note::kHeaderSize), room / tiff::kEntrySize);
    }

    /// Entry `index`, which lies in the note; nothing when its value does not.
    std::optional<IFDTag> Read(std::uint64_t index) {
        const std::uint64_t entry = kFirstEntry + index * tiff::kEntrySize;
        // Only the low byte of the type counts. An unknown type keeps the size of the entry before it.
        const auto type = static_cast<std::uint8_t>(Get<std::uint16_t>(entry + tiff::kTypeInEntry));
        if (const std::uint32_t unit = UnitSize(type); unit != 0) {
            value_size_ = std::uint64_t{Get<std::uint32_t>(entry + tiff::kCountInEntry)} * unit;
        }
        std::uint64_t position = entry + tiff::kValueInEntry;
        if (value_size_ > tiff::kValueFieldSize) {
            position = std::uint64_t{Get<std::uint32_t>(position)} + maker_note::kHeaderSize;
        }
        if (!note_.Holds(position, value_size_)) {
            return std::nullopt;
        }
        return IFDTag{Get<std::uint16_t>(entry), note_.Bytes(position, value_size_)};
    }

  private:
    static constexpr std::uint64_t kFirstEntry = maker_note::kHeaderSize + tiff::kCountSize;

    template <std::unsigned_integral T>
    T Get(std::uint64_t offset) const {
        return note_.Get<T>(offset, true);
    }

    /// Bytes a value of `type`; 0 for a type that the note does not know, UNDEFINED among them.
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

    ByteView note_;
    std::uint64_t value_size_ = 0;
};

/// The `position`-th LONG of a value; bytes beyond the value's end count as 0.
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

void Store(const IFDTag& entry, EXIFInfo& exif) {
    switch (entry.tag) {
        case kSerialNumberTag:
            exif.SerialNumber = Long(entry.value, 0);
            break;
        case kLensTag:
            StoreLens(static_cast<std::uint8_t>(Long(entry.value, 0)), exif);
            break;
        case kExternalBrightnessTag:
            exif.Mn0311 = ToRational(entry.value);
            break;
        case kMeasuredLightTag:
            exif.Mn0312 = ToRational(entry.value);
            break;
        case kApproximateFNumberTag:
            exif.Mn0313 = ToRational(entry.value);
            break;
        case kRedLevelTag:
            exif.Mn0322 = ToRational(entry.value);
            exif.Mn0322Ratio = Ratio(exif.Mn0322);
            break;
        case kGreenLevelTag:
            exif.Mn0323 = ToRational(entry.value);
            exif.Mn0323Ratio = Ratio(exif.Mn0323);
            break;
        case kBlueLevelTag:
            exif.Mn0324 = ToRational(entry.value);
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
        if (const auto entry = reader.Read(i)) {
            Store(*entry, *this);
        }
    }
    return 0;
}
