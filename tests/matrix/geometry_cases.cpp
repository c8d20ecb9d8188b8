// SPDX-License-Identifier: MIT
#include "tests/matrix/geometry_cases.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "samples/camera_dng.h"
#include "samples/sensor_dump.h"
#include "tests/matrix/base_inputs.h"
#include "tiff/tags.h"

namespace matrix {

namespace {

using samples::CameraDngFile;
using samples::kDngPreviewOffset;
using samples::kDngRawOffset;

constexpr std::uint32_t kRawBytes = std::uint32_t{kDngWidth} * kDngHeight;
constexpr std::uint32_t kFileBytes = kDngRawOffset + kRawBytes;
constexpr std::uint32_t kPreviewBytes = kDngRawOffset - kDngPreviewOffset;
constexpr std::uint32_t kLargest = 0xFFFFFFFF;

/// Adds a camera DNG modified by `change`.
void Add(CaseList& cases, const std::string& name, Pixels pixels,
         const std::function<void(CameraDngFile&)>& change) {
    cases.Add("geometry", name, Kind::kDng, pixels, [change] {
        auto file = SmallDng();
        change(file);
        return samples::Serialize(file);
    });
}

/// Adds each width with each height, as SHORT if they fit and as LONG.
void AddSizes(CaseList& cases, bool raw) {
    constexpr std::array<std::uint32_t, 15> sides = {
        0, 1, 2, 3, 4, 5, 319, 320, 3919, 3920, 3968, 65535, 0x7FFFFFFF, 0x80000000, kLargest};
    for (const std::uint32_t width : sides) {
        for (const std::uint32_t height : sides) {
            const std::string name = std::string(raw ? "raw" : "preview") + "-size/" + std::to_string(width) +
                                     "x" + std::to_string(height);
            Add(cases, name, raw ? Pixels::kAny : Pixels::kKnown, [=](CameraDngFile& file) {
                auto& ifd = raw ? file.raw_ifd : file.ifd0;
                samples::Set(ifd, samples::Long(tag::kImageWidth, width));
                samples::Set(ifd, samples::Long(tag::kImageLength, height));
            });
            if (raw && width <= 65535 && height <= 65535) {
                Add(cases, name + "-short", Pixels::kAny, [=](CameraDngFile& file) {
                    samples::Set(file.raw_ifd,
                                 samples::Short(tag::kImageWidth, static_cast<std::uint16_t>(width)));
                    samples::Set(file.raw_ifd,
                                 samples::Short(tag::kImageLength, static_cast<std::uint16_t>(height)));
                });
            }
        }
    }
}

struct Strips {
    const char* name;
    std::vector<std::uint32_t> offsets;
    std::vector<std::uint32_t> sizes;
};

std::vector<Strips> OddStrips(std::uint32_t offset, std::uint32_t bytes) {
    const std::uint32_t half = bytes / 2;
    return {
        {"none", {}, {}},
        {"no-offsets", {}, {bytes}},
        {"no-sizes", {offset}, {}},
        {"empty", {offset}, {0}},
        {"at-the-start", {0}, {bytes}},
        {"the-whole-file", {0}, {kFileBytes}},
        {"one-byte-short", {offset}, {bytes - 1}},
        {"one-byte-long", {offset}, {bytes + 1}},
        {"one-byte-late", {offset + 1}, {bytes}},
        {"at-the-end", {kFileBytes}, {bytes}},
        {"last-byte", {kFileBytes - 1}, {bytes}},
        {"last-byte-alone", {kFileBytes - 1}, {1}},
        {"beyond-the-end", {kFileBytes + 1}, {bytes}},
        {"far-beyond-the-end", {kLargest}, {bytes}},
        {"endless", {offset}, {kLargest}},
        {"beyond-and-endless", {kLargest}, {kLargest}},
        {"together-beyond-32-bits", {offset, offset, offset}, {0x80000000, 0x80000000, bytes}},
        {"overlapping", {offset, offset + 1}, {half, half}},
        {"the-same-twice", {offset, offset}, {half, half}},
        {"out-of-order", {offset + half, offset}, {half, half}},
        {"with-a-gap", {offset, offset + half + 2}, {half, half - 2}},
        {"second-beyond-the-end", {offset, kLargest}, {half, half}},
        {"more-offsets", {offset, offset + half, offset}, {bytes}},
        {"more-sizes", {offset}, {half, half, half}},
        {"with-empty-ones", {offset, offset, offset}, {0, bytes, 0}},
        {"first-empty-elsewhere", {0, offset}, {0, bytes}},
        {"in-the-other-image", {offset == kDngRawOffset ? kDngPreviewOffset : kDngRawOffset}, {bytes}},
        {"many", std::vector<std::uint32_t>(100, offset), std::vector<std::uint32_t>(100, bytes / 100)},
        {"many-of-nothing", std::vector<std::uint32_t>(100, offset), std::vector<std::uint32_t>(100, 0)},
    };
}

void AddStrips(CaseList& cases, bool raw) {
    const std::uint32_t offset = raw ? kDngRawOffset : kDngPreviewOffset;
    for (const Strips& strips : OddStrips(offset, raw ? kRawBytes : kPreviewBytes)) {
        const std::string name = std::string(raw ? "raw" : "preview") + "-strips/" + strips.name;
        Add(cases, name, raw ? Pixels::kAny : Pixels::kKnown, [=](CameraDngFile& file) {
            auto& ifd = raw ? file.raw_ifd : file.ifd0;
            samples::Set(ifd, samples::Longs(tag::kStripOffsets, strips.offsets));
            samples::Set(ifd, samples::Longs(tag::kStripByteCounts, strips.sizes));
        });
    }
    for (const std::uint32_t rows : {0U, 1U, 3U, 4U, 5U, 65535U, kLargest}) {
        const std::string name =
            std::string(raw ? "raw" : "preview") + "-rows-per-strip/" + std::to_string(rows);
        Add(cases, name, Pixels::kKnown, [=](CameraDngFile& file) {
            samples::Set(raw ? file.raw_ifd : file.ifd0, samples::Long(tag::kRowsPerStrip, rows));
        });
    }
}

/// Adds linearization tables of any length, with their bytes declared as any type.
void AddTables(CaseList& cases) {
    constexpr std::array<std::size_t, 10> lengths = {0, 1, 2, 3, 128, 255, 256, 257, 300, 700};
    constexpr std::uint16_t last_type = 13;
    for (const std::size_t length : lengths) {
        for (std::uint16_t type = 0; type <= last_type; ++type) {
            const std::string name = "table/" + std::to_string(length) + "-of-type-" + std::to_string(type);
            Add(cases, name, Pixels::kAny, [=](CameraDngFile& file) {
                auto table =
                    samples::Shorts(tag::kLinearizationTable, std::vector<std::uint16_t>(length, 0xFFFE));
                table.type = type;
                samples::Set(file.raw_ifd, table);
            });
        }
    }
}

/// Sets a SHORT in the raw IFD to `value`.
void AddShort(CaseList& cases, const char* what, std::uint16_t tag, std::uint32_t value, Pixels pixels) {
    Add(cases, std::string(what) + "/" + std::to_string(value), pixels, [=](CameraDngFile& file) {
        samples::Set(file.raw_ifd, samples::Short(tag, static_cast<std::uint16_t>(value)));
    });
}

void AddNumbers(CaseList& cases) {
    std::vector<std::uint32_t> numbers;
    for (std::uint32_t number = 0; number <= 66; ++number) {
        numbers.push_back(number);
    }
    numbers.insert(numbers.end(), {128, 255, 256, 257, 264, 272, 32767, 32768, 32776, 65534, 65535});
    for (const std::uint32_t number : numbers) {
        AddShort(cases, "bits-per-sample", tag::kBitsPerSample, number, Pixels::kAny);
        Add(cases, "bits-per-sample/" + std::to_string(number) + "-without-table", Pixels::kAny,
            [number](CameraDngFile& file) {
                samples::Remove(file.raw_ifd, tag::kLinearizationTable);
                samples::Set(file.raw_ifd,
                             samples::Short(tag::kBitsPerSample, static_cast<std::uint16_t>(number)));
            });
        AddShort(cases, "compression", tag::kCompression, number, Pixels::kKnown);
        AddShort(cases, "samples-per-pixel", tag::kSamplesPerPixel, number, Pixels::kKnown);
    }
}

}  // namespace

void AddGeometryCases(CaseList& cases) {
    for (const bool raw : {true, false}) {
        AddSizes(cases, raw);
        AddStrips(cases, raw);
    }
    AddTables(cases);
    AddNumbers(cases);
}

}  // namespace matrix
