// SPDX-License-Identifier: MIT
#include "samples/exif_block.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

using Octets = std::vector<std::uint8_t>;

TEST(SampleExifBlock, LaysOutIfd0AndExifIfdEachFollowedByItsValues) {
    samples::ExifBlock block;
    block.ifd0 = {samples::Ascii(tag::kMake, "Leica"), samples::Short(tag::kOrientation, 6)};
    block.exif = {samples::Rationals(tag::kExposureTime, {{1, 250}})};
    const Octets expected = {
        'E',  'x',  'i', 'f', 0,   0,                      // Exif header
        'I',  'I',  42,  0,   8,   0, 0, 0,                // TIFF header
        3,    0,                                           // IFD0 at 8
        0x0F, 0x01, 2,   0,   6,   0, 0, 0, 50,  0, 0, 0,  // Make, 6 characters at 50
        0x12, 0x01, 3,   0,   1,   0, 0, 0, 6,   0, 0, 0,  // Orientation
        0x69, 0x87, 4,   0,   1,   0, 0, 0, 56,  0, 0, 0,  // ExifIFD
        0,    0,    0,   0,                                // no IFD1
        'L',  'e',  'i', 'c', 'a', 0,                      //
        1,    0,                                           // EXIF IFD at 56
        0x9A, 0x82, 5,   0,   1,   0, 0, 0, 74,  0, 0, 0,  // ExposureTime at 74
        0,    0,    0,   0,   1,   0, 0, 0, 250, 0, 0, 0,  // link, 1/250
    };
    EXPECT_EQ(samples::Serialize(block), expected);
}

TEST(SampleExifBlock, BigEndianReversesNumbersButNotText) {
    samples::ExifBlock block;
    block.order = ByteOrder::kBigEndian;
    block.with_exif_ifd = false;
    block.ifd0 = {samples::Ascii(tag::kMake, "abc"), samples::Shorts(tag::kOrientation, {6, 7})};
    const Octets expected = {
        'E',  'x',  'i', 'f', 0, 0, 'M', 'M', 0,   42,  0,   0, 0, 8, 0, 2,  //
        0x01, 0x0F, 0,   2,   0, 0, 0,   4,   'a', 'b', 'c', 0,              //
        0x01, 0x12, 0,   3,   0, 0, 0,   2,   0,   6,   0,   7,              //
        0,    0,    0,   0,
    };
    EXPECT_EQ(samples::Serialize(block), expected);
}

TEST(SampleExifBlock, OddValuesArePaddedToAnEvenLength) {
    samples::ExifBlock block;
    block.with_exif_ifd = false;
    block.ifd0 = {samples::AsciiUnterminated(tag::kMake, "abcde"), samples::Ascii(tag::kModel, "fghij")};
    const Octets bytes = samples::Serialize(block);
    constexpr std::size_t kModelField = samples::kExifHeaderSize + tiff::kHeaderSize + 2 + 12 + 8;
    EXPECT_EQ(bytes.at(kModelField), 38 + 6);
    EXPECT_EQ(bytes.size(), samples::kExifHeaderSize + 38 + 6 + 6);
}

TEST(SampleExifBlock, MembersReplaceTheHeaderFields) {
    samples::ExifBlock block;
    block.byte_order_mark = {'M', 'I'};
    block.magic = 43;
    block.first_ifd_offset = 0x01020304;
    block.ifd0_count = 9;
    block.exif_ifd_offset = 0x0A0B0C0D;
    const Octets bytes = samples::Serialize(block);
    const Octets start(bytes.begin() + 6, bytes.begin() + 16);
    EXPECT_EQ(start, (Octets{'M', 'I', 43, 0, 4, 3, 2, 1, 9, 0}));
    const Octets pointer(bytes.begin() + 24, bytes.begin() + 28);
    EXPECT_EQ(pointer, (Octets{0x0D, 0x0C, 0x0B, 0x0A}));
}

TEST(SampleEntry, RawFieldReplacesTheOffset) {
    samples::Entry entry = samples::Rationals(tag::kFocalLength, {{50000, 1000}});
    entry.raw_field = 0xFFFFFFF0;
    Octets table;
    Octets values;
    samples::AppendIfd({entry}, ByteOrder::kLittleEndian, 100, 0, table, values);
    EXPECT_TRUE(values.empty());
    EXPECT_EQ(Octets(table.begin() + 10, table.begin() + 14), (Octets{0xF0, 0xFF, 0xFF, 0xFF}));
}

TEST(SampleEntry, AsciiTerminatesTextWithOneNul) {
    EXPECT_EQ(samples::Ascii(tag::kMake, "ab").value, (Octets{'a', 'b', 0}));
    EXPECT_EQ(samples::Ascii(tag::kMake, {"ab\0", 3}).count, 3U);
    EXPECT_EQ(samples::Ascii(tag::kMake, "").value, (Octets{0}));
    EXPECT_EQ(samples::AsciiUnterminated(tag::kMake, "ab").count, 2U);
}

TEST(SampleEntry, SetAndRemoveGoByTag) {
    std::vector<samples::Entry> entries = {samples::Short(10, 1), samples::Short(30, 3)};
    samples::Set(entries, samples::Short(20, 2));
    samples::Set(entries, samples::Short(30, 4));
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[1].tag, 20);
    EXPECT_EQ(samples::Find(entries, 30)->value[0], 4);
    EXPECT_TRUE(samples::Remove(entries, 10));
    EXPECT_FALSE(samples::Remove(entries, 10));
    EXPECT_EQ(samples::Find(entries, 10), nullptr);
}

}  // namespace
