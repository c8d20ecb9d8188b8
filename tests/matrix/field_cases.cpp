// SPDX-License-Identifier: MIT
#include "tests/matrix/field_cases.h"

#include <array>
#include <limits>
#include <set>
#include <string>

#include "tests/matrix/base_inputs.h"
#include "tests/matrix/tiff_places.h"
#include "tiff/types.h"

namespace matrix {

namespace {

/// An undamaged input and the places of its numbers.
struct Base {
    const char* name;
    Kind kind;
    Bytes bytes;
    TiffPlaces places;
};

Base JpegBase(const char* name, ByteOrder order) {
    Bytes bytes = PairJpeg(order);
    TiffPlaces places = PlacesInJpeg(bytes);
    return {name, Kind::kPair, std::move(bytes), std::move(places)};
}

Base DngBase(const char* name, Bytes bytes) {
    TiffPlaces places = PlacesInDng(bytes);
    return {name, Kind::kDng, std::move(bytes), std::move(places)};
}

// Static, because the cases refer to them.
const Base& Jpeg() {
    static const Base base = JpegBase("jpeg", ByteOrder::kLittleEndian);
    return base;
}

const Base& BigEndianJpeg() {
    static const Base base = JpegBase("big-endian-jpeg", ByteOrder::kBigEndian);
    return base;
}

const Base& Dng() {
    static const Base base = DngBase("dng", CameraDng());
    return base;
}

const Base& SixteenBitDng() {
    static const Base base = DngBase("16-bit-dng", RepairedDng());
    return base;
}

/// The limit values that fit into `place`. Offsets count from `base`, and `end` is the end of the file.
std::set<std::uint32_t> Limits(const Place& place, std::size_t base, std::size_t end) {
    const std::uint32_t most = place.width == 2 ? 0xFFFFU : 0xFFFFFFFFU;
    const auto own = static_cast<std::uint32_t>(place.offset - base);
    const auto size = static_cast<std::uint32_t>(end - base);
    std::set<std::uint32_t> values;
    for (const std::uint32_t value : {0U, 1U, most - 1, most, most / 2 + 1, own, size - 1, size, size + 1}) {
        values.insert(value & most);
    }
    return values;
}

struct Damage {
    Place place;
    std::uint32_t value;
};

Bytes Damaged(const Base& base, Damage damage) {
    Bytes bytes = base.bytes;
    Put(bytes, damage.place, damage.value);
    return bytes;
}

void AddLimits(CaseList& cases, const char* group, const Base& base, const NumberPlace& number) {
    for (const std::uint32_t value : Limits(number.place, number.base, number.end)) {
        const Damage damage = {number.place, value};
        if (Get(base.bytes, damage.place) != value) {
            cases.Add(group, std::string(base.name) + "/" + number.name + "=" + std::to_string(value),
                      base.kind, number.moves_pixels ? Pixels::kAny : Pixels::kKnown,
                      [&base, damage] { return Damaged(base, damage); });
        }
    }
}

/// Adds the limit values of one field of an entry.
void AddLimits(CaseList& cases, const char* group, const Base& base, const EntryPlaces& entry,
               const NumberPlace& field) {
    AddLimits(cases, group, base,
              {entry.Name() + "/" + field.name, field.place, entry.base, entry.end,
               MovesPixels(entry.directory, entry.number)});
}

/// Adds limit values of the numbers for which byte order matters most: 32-bit numbers and numbers outside
/// entries.
void AddLongLimits(CaseList& cases, const char* group, const Base& base) {
    for (const auto& number : base.places.numbers) {
        AddLimits(cases, group, base, number);
    }
    for (const auto& entry : base.places.entries) {
        AddLimits(cases, group, base, entry, {"count", entry.count});
        AddLimits(cases, group, base, entry, {"value", entry.value});
    }
}

void AddAllLimits(CaseList& cases, const char* group, const Base& base) {
    AddLongLimits(cases, group, base);
    for (const auto& entry : base.places.entries) {
        AddLimits(cases, group, base, entry, {"tag", entry.tag});
        AddLimits(cases, group, base, entry, {"type", entry.type});
    }
}

struct TypeDamage {
    EntryPlaces entry;
    std::uint16_t type;
    std::uint32_t count;
};

/// Adds a case with the type and the count of `damage`.
void AddType(CaseList& cases, const char* group, const Base& base, const TypeDamage& damage) {
    const std::string name = std::string(base.name) + "/" + damage.entry.Name() +
                             "/type=" + std::to_string(damage.type) +
                             ",count=" + std::to_string(damage.count);
    const Pixels pixels =
        MovesPixels(damage.entry.directory, damage.entry.number) ? Pixels::kAny : Pixels::kKnown;
    cases.Add(group, name, base.kind, pixels, [&base, damage] {
        Bytes bytes = base.bytes;
        Put(bytes, damage.entry.type, damage.type);
        Put(bytes, damage.entry.count, damage.count);
        return bytes;
    });
}

void AddTypes(CaseList& cases, const Base& base) {
    constexpr std::uint16_t last_type = 20;
    constexpr std::uint16_t largest_type = 65535;
    for (const auto& entry : base.places.entries) {
        const std::uint32_t count = Get(base.bytes, entry.count);
        for (std::uint16_t type = 0; type <= last_type; ++type) {
            AddType(cases, "types", base, {entry, type, count});
        }
        AddType(cases, "types", base, {entry, largest_type, count});
    }
}

/// Adds counts for which the length of the value is just below, exactly, or just above 2^32 bytes.
void AddCounts(CaseList& cases, const Base& base) {
    constexpr std::uint64_t wrap = std::uint64_t{1} << 32U;
    struct Sized {
        std::uint16_t type;
        std::uint32_t size;
    };
    constexpr std::array sized = {Sized{tiff::kAscii, 1}, Sized{tiff::kUndefined, 1}, Sized{tiff::kShort, 2},
                                  Sized{tiff::kLong, 4}, Sized{tiff::kRational, 8}};
    for (const auto& entry : base.places.entries) {
        for (const Sized& element : sized) {
            const std::uint64_t at_wrap = wrap / element.size;
            for (const std::uint64_t count : {at_wrap - 1, at_wrap, at_wrap + 1}) {
                if (count < wrap) {
                    AddType(cases, "counts", base, {entry, element.type, static_cast<std::uint32_t>(count)});
                }
            }
        }
    }
}

}  // namespace

void AddFieldCases(CaseList& cases) {
    AddAllLimits(cases, "jpeg-fields", Jpeg());
    AddLongLimits(cases, "jpeg-fields", BigEndianJpeg());
    AddAllLimits(cases, "dng-fields", Dng());
    AddAllLimits(cases, "dng-fields", SixteenBitDng());
}

void AddTypeCases(CaseList& cases) {
    for (const Base* base : {&Jpeg(), &Dng()}) {
        AddTypes(cases, *base);
        AddCounts(cases, *base);
    }
}

}  // namespace matrix
