// SPDX-License-Identifier: MIT
#include "samples/camera_dng.h"

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "base/byte_order.h"
#include "samples/maker_note.h"
#include "samples/sensor_dump.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

using Octets = std::vector<std::uint8_t>;
using byte_order::GetLittle;

constexpr std::size_t kPreviewBytes = 230400;
constexpr std::size_t kRawBytes = 10340960;

samples::CameraDngFile FlatDng() {
    return samples::CameraDng({}, Octets(kPreviewBytes, 0x55), Octets(kRawBytes, 0x77));
}

std::vector<std::uint32_t> LongsOf(const std::vector<samples::Entry>& entries, std::uint16_t tag) {
    std::vector<std::uint32_t> values;
    const samples::Entry* const entry = samples::Find(entries, tag);
    for (std::size_t i = 0; entry != nullptr && i + 4 <= entry->value.size(); i += 4) {
        values.push_back(GetLittle<std::uint32_t>(std::span(entry->value).subspan(i, 4)));
    }
    return values;
}

std::uint32_t CountAt(const Octets& bytes, std::size_t offset) {
    return GetLittle<std::uint16_t>(std::span(bytes).subspan(offset, 2));
}

/// The value field of `tag` in the IFD at `offset`; 0 if the IFD has no such entry.
std::uint32_t FieldOf(const Octets& bytes, std::size_t offset, std::uint16_t tag) {
    for (std::size_t i = 0; i < CountAt(bytes, offset); ++i) {
        const auto entry = std::span(bytes).subspan(offset + 2 + (i * tiff::kEntrySize), tiff::kEntrySize);
        if (GetLittle<std::uint16_t>(entry) == tag) {
            return GetLittle<std::uint32_t>(entry.subspan(tiff::kValueInEntry));
        }
    }
    return 0;
}

TEST(SampleCameraDng, HasTheCamerasSizeAndOffsets) {
    const Octets bytes = samples::Serialize(FlatDng());
    ASSERT_EQ(bytes.size(), 10575296U);
    EXPECT_EQ(Octets(bytes.begin(), bytes.begin() + 8), (Octets{'I', 'I', 42, 0, 8, 0, 0, 0}));
    EXPECT_EQ(CountAt(bytes, 8), 40U);
    EXPECT_EQ(FieldOf(bytes, 8, tag::kSubIFDs), 494U);
    EXPECT_EQ(CountAt(bytes, 494), 22U);
    EXPECT_EQ(FieldOf(bytes, 8, tag::kExifIFD), 764U);
    EXPECT_EQ(CountAt(bytes, 764), 20U);
    EXPECT_EQ(bytes[3936], 0x55);
    EXPECT_EQ(bytes[234335], 0x55);
    EXPECT_EQ(bytes[234336], 0x77);
    EXPECT_EQ(bytes.back(), 0x77);
}

TEST(SampleCameraDng, StripsFillTheFileToItsEnd) {
    const samples::CameraDngFile file = FlatDng();
    EXPECT_EQ(LongsOf(file.ifd0, tag::kStripOffsets),
              (std::vector<std::uint32_t>{3936, 69216, 134496, 199776}));
    EXPECT_EQ(LongsOf(file.ifd0, tag::kStripByteCounts),
              (std::vector<std::uint32_t>{65280, 65280, 65280, 34560}));
    const std::vector<std::uint32_t> offsets = LongsOf(file.raw_ifd, tag::kStripOffsets);
    const std::vector<std::uint32_t> counts = LongsOf(file.raw_ifd, tag::kStripByteCounts);
    ASSERT_EQ(offsets.size(), 165U);
    ASSERT_EQ(counts.size(), 165U);
    EXPECT_EQ(offsets[0], 234336U);
    EXPECT_EQ(offsets[1], 234336U + 62720U);
    EXPECT_EQ(counts.front(), 62720U);
    EXPECT_EQ(counts.back(), 54880U);
    EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), 0U), kRawBytes);
    EXPECT_EQ(offsets.back() + counts.back(), samples::kCameraDngBytes);
}

TEST(SampleCameraDng, CarriesThe220ByteMakerNote) {
    const Octets bytes = samples::Serialize(FlatDng());
    const std::size_t offset = FieldOf(bytes, samples::kDngExifIfdOffset, tag::kMakerNote);
    const Octets expected = samples::DngMakerNote({});
    ASSERT_EQ(expected.size(), 220U);
    const auto note = std::span(bytes).subspan(offset, expected.size());
    EXPECT_EQ(Octets(note.begin(), note.end()), expected);
}

TEST(SampleCameraDng, LacksTagsThatTheCameraDoesNotWrite) {
    const samples::CameraDngFile file = FlatDng();
    EXPECT_EQ(samples::Find(file.ifd0, tag::kHostComputer), nullptr);
    EXPECT_EQ(samples::Find(file.ifd0, tag::kDateTime), nullptr);
    EXPECT_EQ(samples::Find(file.raw_ifd, tag::kBlackLevel), nullptr);
    EXPECT_EQ(samples::Find(file.exif, tag::kFNumber), nullptr);
}

TEST(SampleCameraDng, PointersFollowMovedIfds) {
    samples::CameraDngFile file = FlatDng();
    samples::Set(file.ifd0, samples::Ascii(tag::kHostComputer, "host"));
    samples::Remove(file.raw_ifd, tag::kBayerGreenSplit);
    const Octets bytes = samples::Serialize(file);
    EXPECT_EQ(FieldOf(bytes, 8, tag::kSubIFDs), 494U + 12U);
    EXPECT_EQ(FieldOf(bytes, 8, tag::kExifIFD), 764U);
    EXPECT_EQ(bytes.size(), samples::kCameraDngBytes);
}

TEST(SampleCameraDng, RawFieldsOfPointersAreKept) {
    samples::CameraDngFile file = FlatDng();
    samples::Find(file.ifd0, tag::kSubIFDs)->raw_field = 0xFFFFFFFF;
    EXPECT_EQ(FieldOf(samples::Serialize(file), 8, tag::kSubIFDs), 0xFFFFFFFFU);
}

TEST(SampleCameraDng, TooManyValuesGiveAnEmptyFile) {
    samples::CameraDngFile file = FlatDng();
    samples::Set(file.ifd0, samples::Bytes(tag::kImageDescription, Octets(4000)));
    EXPECT_TRUE(samples::Serialize(file).empty());
}

TEST(SampleCameraDng, ThePreviewShowsTheSceneBetweenBlackBands) {
    const Octets preview = samples::PreviewOf(samples::Scene(320, 214));
    ASSERT_EQ(preview.size(), kPreviewBytes);
    EXPECT_EQ(preview.front(), 0);
    EXPECT_EQ(preview.back(), 0);
    EXPECT_GT(preview[std::size_t{3} * 320 * 14], 80);
}

}  // namespace
