// SPDX-License-Identifier: MIT
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dng/dnglib.h"
#include "tests/dng/expected_tags.h"
#include "tests/support/files.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Reads the IFD at byte `offset` of a file.
class ReadIFD {
  public:
    explicit ReadIFD(const Bytes& bytes, int offset = 0) {
        const support::TempFolder folder;
        support::WriteFile(folder / "file", bytes);
        std::ifstream file(folder / "file", std::ios::binary);
        file.seekg(offset);
        DNGlib dng(nullptr, nullptr);
        end = dng.GetIFDs(&file, &tags);
        whole = file.good();
        position = file.tellg();
    }

    std::string Listing() const { return expected::Listing(tags); }

    DNGlib::IFD tags;
    int end = 0;                  ///< as returned
    bool whole = false;           ///< the stream is still good
    std::streamoff position = 0;  ///< of the stream afterwards
};

std::string Listed(const expected::Tags& tags) {
    return expected::Listing(tags);
}

// The entries of all files below are written byte for byte: tag, type, count, value field.

TEST(IFDReader, TakesTwoShortsFromTheEntryAndSkipsNothing) {
    const ReadIFD ifd({2,    0,                                   //
                       0x8D, 0x82, 3, 0, 2, 0, 0, 0, 2, 0, 2, 0,  // CFARepeatPatternDim 2 2
                       0x12, 0x01, 3, 0, 1, 0, 0, 0, 6, 0, 9, 9});
    EXPECT_EQ(ifd.Listing(), Listed({samples::Short(274, 6), samples::Shorts(33421, {2, 2})}));
    EXPECT_EQ(ifd.end, 26);
    EXPECT_TRUE(ifd.whole);
}

TEST(IFDReader, StepsOverTheRestOfAShortValueField) {
    const ReadIFD ifd(
        {4,    0,                                               //
         0x12, 0x01, 3, 0, 1, 0, 0, 0, 6,    0,    0xFF, 0xFF,  // one SHORT: two bytes are skipped
         0x13, 0x01, 1, 0, 1, 0, 0, 0, 7,    9,    9,    9,     // one BYTE: three
         0x14, 0x01, 2, 0, 3, 0, 0, 0, 'a',  'b',  0,    9,     // three ASCII: one
         0x15, 0x01, 4, 0, 1, 0, 0, 0, 0x78, 0x56, 0x34, 0x12});
    EXPECT_EQ(ifd.Listing(), Listed({samples::Short(274, 6), samples::Bytes(275, {7}),
                                     samples::Ascii(276, "ab"), samples::Long(277, 0x12345678)}));
    EXPECT_EQ(ifd.end, 50);
}

TEST(IFDReader, FollowsTheOffsetOfALongValueAndReturnsToTheNextEntry) {
    const ReadIFD ifd({2,    0,                                          //
                       0x11, 0x01, 4, 0, 2,    0,    0, 0, 30, 0, 0, 0,  // two LONGs at 30
                       0x12, 0x01, 3, 0, 1,    0,    0, 0, 6,  0, 0, 0,  //
                       9,    9,    9, 9,                                 // the link, which is not read
                       0x60, 0x0F, 0, 0, 0xE0, 0x0D, 1, 0});             // 3936, 69088
    EXPECT_EQ(ifd.Listing(), Listed({samples::Longs(273, {3936, 69088}), samples::Short(274, 6)}));
    EXPECT_EQ(ifd.end, 26);
    EXPECT_EQ(ifd.position, 26);
}

TEST(IFDReader, ReadsASingleRationalFromItsOffset) {
    const ReadIFD ifd({1,    0,                                    //
                       0x1A, 0x01, 5, 0, 1, 0, 0, 0, 18, 0, 0, 0,  //
                       9,    9,    9, 9,                           //
                       0x2C, 0x01, 0, 0, 1, 0, 0, 0});             // 300/1
    EXPECT_EQ(ifd.Listing(), Listed({samples::Rationals(282, {{300, 1}})}));
}

TEST(IFDReader, CountsOffsetsFromTheStartOfTheFile) {
    const ReadIFD ifd({9,    9,    9,    1,    0,                           // the IFD begins at byte 3
                       0x1A, 0x01, 10,   0,    1,    0, 0, 0, 17, 0, 0, 0,  //
                       0x92, 0xFF, 0xFF, 0xFF, 0xCF, 0, 0, 0},
                      3);
    EXPECT_EQ(ifd.Listing(), Listed({samples::SRationals(282, {{-110, 207}})}));
    EXPECT_EQ(ifd.end, 17);
}

TEST(IFDReader, TakesBytesOfEveryOneByteType) {
    const ReadIFD ifd({4, 0,                                           //
                       1, 0, 1, 0, 4,   0,   0,   0,   1,    2, 3, 4,  // BYTE
                       2, 0, 2, 0, 5,   0,   0,   0,   54,   0, 0, 0,  // ASCII, five bytes at 54
                       3, 0, 6, 0, 2,   0,   0,   0,   0xFF, 1, 9, 9,  // SBYTE
                       4, 0, 7, 0, 1,   0,   0,   0,   3,    9, 9, 9,  // UNDEFINED
                       0, 0, 0, 0, '1', '.', '1', '0', 0});
    ASSERT_TRUE(ifd.whole);
    EXPECT_EQ(ifd.tags.at(1).value, (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(ifd.tags.at(2).value, (Bytes{'1', '.', '1', '0', 0}));
    EXPECT_EQ(ifd.tags.at(2).length, 5U);
    EXPECT_EQ(ifd.tags.at(3).value, (Bytes{0xFF, 1}));
    EXPECT_EQ(ifd.tags.at(3).type, 6);
    EXPECT_EQ(ifd.tags.at(4).value, Bytes{3});
    EXPECT_EQ(ifd.tags.at(4).type, 7);
}

TEST(IFDReader, SkipsEntriesOfUnknownTypes) {
    const ReadIFD ifd(
        {5,    0,                                                                 //
         1,    0,    11,   0,    1,    0,    0,    0,    0,    0,    0,    0,     // FLOAT
         2,    0,    12,   0,    1,    0,    0,    0,    0xFF, 0xFF, 0xFF, 0xFF,  // DOUBLE outside the file
         3,    0,    0,    0,    0xFF, 0xFF, 0xFF, 0xFF, 0,    0,    0,    0,     //
         4,    0,    0xFF, 0xFF, 1,    0,    0,    0,    0,    0,    0,    0,     //
         0x12, 0x01, 3,    0,    1,    0,    0,    0,    6,    0,    0,    0});
    EXPECT_EQ(ifd.Listing(), Listed({samples::Short(274, 6)}));
    EXPECT_TRUE(ifd.whole);
    EXPECT_EQ(ifd.end, 62);
}

TEST(IFDReader, KeepsTheSecondOfTwoEntriesOfOneTag) {
    const ReadIFD ifd({2,    0,                                   //
                       0x12, 0x01, 3, 0, 1, 0, 0, 0, 6, 0, 0, 0,  //
                       0x12, 0x01, 3, 0, 1, 0, 0, 0, 8, 0, 0, 0});
    EXPECT_EQ(ifd.Listing(), Listed({samples::Short(274, 8)}));
}

TEST(IFDReader, ReadsOnlyTheCountOfAnEmptyIFD) {
    const ReadIFD ifd({0, 0, 9, 9});
    EXPECT_TRUE(ifd.tags.empty());
    EXPECT_TRUE(ifd.whole);
    EXPECT_EQ(ifd.end, 2);
}

TEST(IFDReader, FailsTheStreamIfTheFileEndsInsideTheIFD) {
    const Bytes file = {1, 0, 0x12, 0x01, 3, 0, 1, 0, 0, 0, 6, 0, 0, 0};
    EXPECT_TRUE(ReadIFD(file).whole);
    for (std::size_t size = 0; size < file.size(); ++size) {
        const ReadIFD ifd({file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)});
        EXPECT_FALSE(ifd.whole) << size;
        EXPECT_TRUE(ifd.tags.empty()) << size;
    }
}

TEST(IFDReader, FailsTheStreamIfAValueRunsPastTheEnd) {
    Bytes file = {1, 0, 0x1A, 0x01, 5, 0, 1, 0, 0, 0, 14, 0, 0, 0, 0x2C, 1, 0, 0, 1, 0, 0, 0};
    EXPECT_TRUE(ReadIFD(file).whole);
    file.pop_back();
    EXPECT_FALSE(ReadIFD(file).whole);
    file.push_back(0);
    file[10] = 15;
    EXPECT_FALSE(ReadIFD(file).whole);
    file[10] = 14;
    file[9] = 0x80;  // a count of 2^31 + 1, too many bytes for 32 bits
    EXPECT_FALSE(ReadIFD(file).whole);
}

TEST(IFDReader, FailsTheStreamForAnOffsetPastTheEnd) {
    EXPECT_FALSE(ReadIFD({0, 0}, 3).whole);
    EXPECT_FALSE(ReadIFD({0, 0}, 0x7FFFFFFF).whole);
}

/// A few entries may share a value, but not so many that they need more memory than the file has bytes.
TEST(IFDReader, FailsTheStreamIfAllValuesTogetherAreLongerThanTheFile) {
    const auto file = [](std::uint8_t entries) {
        Bytes bytes = {entries, 0};
        for (std::uint8_t tag = 1; tag <= entries; ++tag) {
            const Bytes entry = {tag, 0, 7, 0, 40, 0, 0, 0, 2, 0, 0, 0};
            bytes.insert(bytes.end(), entry.begin(), entry.end());
        }
        bytes.resize(150);
        return bytes;
    };
    EXPECT_TRUE(ReadIFD(file(2)).whole);   // 2 + 2 * (12 + 40) = 106
    EXPECT_FALSE(ReadIFD(file(3)).whole);  // 158
}

TEST(Parsers, PutBytesTogetherLowByteFirst) {
    const Bytes bytes = {0x34, 0x12, 0x78, 0x56, 0x34, 0x92};
    EXPECT_EQ(DNGlib::ParseShort(bytes.data(), 1), std::vector<std::uint16_t>{0x1234});
    EXPECT_EQ(DNGlib::ParseLong(&bytes[2], 1), std::vector<unsigned int>{0x92345678});
    EXPECT_EQ(DNGlib::ParseSLong(&bytes[2], 1), std::vector<int>{-1842063752});
}

TEST(Parsers, CountValuesNotBytes) {
    const Bytes bytes = {1, 0, 0, 0, 2, 0, 0, 0, 0xFD, 0xFF, 0xFF, 0xFF, 4, 0, 0, 0};
    EXPECT_EQ(DNGlib::ParseShort(bytes.data(), 3), (std::vector<std::uint16_t>{1, 0, 2}));
    EXPECT_EQ(DNGlib::ParseLong(bytes.data(), 3), (std::vector<unsigned int>{1, 2, 4294967293}));
    EXPECT_EQ(DNGlib::ParseSLong(bytes.data(), 4), (std::vector<int>{1, 2, -3, 4}));
    const auto rationals = DNGlib::ParseSRational(bytes.data(), 2);
    ASSERT_EQ(rationals.size(), 2U);
    EXPECT_EQ(rationals[0].numerator, 1);
    EXPECT_EQ(rationals[0].denominator, 2);
    EXPECT_EQ(rationals[1].numerator, -3);
    EXPECT_EQ(rationals[1].denominator, 4);
    EXPECT_TRUE(DNGlib::ParseSRational(nullptr, 0).empty());
    EXPECT_TRUE(DNGlib::ParseLong(nullptr, 0).empty());
}

}  // namespace
