// SPDX-License-Identifier: MIT
// Tests where the parser finds the EXIF block and its directories, and how it
// treats damaged ones.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exif/exif_info.h"
#include "samples/camera_jpeg.h"
#include "samples/exif_block.h"
#include "tests/exif/parse_block.h"

namespace {

using FileBytes = std::vector<std::uint8_t>;
using Numbers = std::vector<std::uint16_t>;

constexpr int kNotAJpeg = 1982;
constexpr int kNoExif = 1983;
constexpr int kUnknownByteOrder = 1984;
constexpr int kCorruptExif = 1985;

constexpr std::uint16_t kMake = 271;
constexpr std::uint16_t kOrientation = 274;
constexpr std::uint16_t kExifPointer = 34665;
constexpr std::uint16_t kISOSpeedRatings = 34855;

const std::string kLeica("Leica\0", 6);

/// A file whose IFD0 names the maker. The length field of its APP1 segment is at byte 4.
FileBytes LeicaJpeg() {
    return samples::CameraJpeg({.ifd0 = {samples::Ascii(kMake, "Leica")}, .with_exif_ifd = false});
}

FileBytes WithSegmentLength(FileBytes jpeg, std::size_t length) {
    jpeg.at(4) = static_cast<std::uint8_t>(length / 256);
    jpeg.at(5) = static_cast<std::uint8_t>(length % 256);
    return jpeg;
}

/// `jpeg` with `bytes` between SOI and APP1.
FileBytes WithBytesBeforeApp1(const FileBytes& jpeg, const FileBytes& bytes) {
    FileBytes longer;
    longer.reserve(jpeg.size() + bytes.size());
    longer.assign(jpeg.begin(), jpeg.begin() + 2);
    longer.insert(longer.end(), bytes.begin(), bytes.end());
    longer.insert(longer.end(), jpeg.begin() + 2, jpeg.end());
    return longer;
}

/// Parses `jpeg` and expects `result` and `make`.
void ExpectMake(const FileBytes& jpeg, int result, const std::string& make) {
    EXIFInfo exif;
    EXPECT_EQ(ParseJpeg(jpeg, exif), result);
    EXPECT_EQ(exif.Make, make);
}

/// 32 bytes: the headers are 14, IFD0 with one entry is 18.
FileBytes OrientationBlock() {
    return samples::Serialize({.ifd0 = {samples::Short(kOrientation, 6)}, .with_exif_ifd = false});
}

/// 50 bytes: the headers and IFD0 are 32, the EXIF IFD with one entry is 18.
FileBytes IsoBlock(const samples::Entry& pointer = samples::Long(kExifPointer, 26)) {
    return samples::Serialize({.ifd0 = {pointer}, .exif = {samples::Short(kISOSpeedRatings, 640)}});
}

/// Parses `payload` and expects `result` and `iso`.
void ExpectIso(const FileBytes& payload, int result, std::uint16_t iso) {
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(payload, exif), result);
    EXPECT_EQ(exif.ISOSpeedRatings, iso);
}

TEST(ExifParser, NoBytesOrFewerThanFourHoldNoExif) {
    EXIFInfo exif;
    EXPECT_EQ(exif.parseFrom(nullptr, 100), kNoExif);
    EXPECT_EQ(exif.parseFrom(std::string()), kNoExif);
    EXPECT_EQ(ParseJpeg({0xFF, 0xD8, 0xD9}, exif), kNoExif);
}

TEST(ExifParser, AFileMustBeginWithStartAndEndWithEndOfImage) {
    const FileBytes good = LeicaJpeg();
    for (const std::size_t position : {std::size_t{0}, std::size_t{1}, good.size() - 2, good.size() - 1}) {
        FileBytes bad = good;
        bad[position] ^= 1U;
        ExpectMake(bad, kNotAJpeg, "");
    }
    ExpectMake({0xFF, 0xD8, 0xFF, 0xDA}, kNotAJpeg, "");
}

TEST(ExifParser, TrailingPaddingAfterEndOfImageIsNotAJpeg) {
    ExpectMake(Resized(LeicaJpeg(), LeicaJpeg().size() + 1), kNotAJpeg, "");
}

TEST(ExifParser, AFileThatIsNotAJpegLeavesTheRecordUnchanged) {
    EXIFInfo exif;
    exif.Make = "before";
    EXPECT_EQ(ParseJpeg({0xFF, 0xD8, 0, 0, 0}, exif), kNotAJpeg);
    EXPECT_EQ(ParseJpeg({0xFF}, exif), kNoExif);
    EXPECT_EQ(exif.Make, "before");
}

TEST(ExifParser, AJpegClearsTheRecordEvenWhenItHoldsNoExif) {
    EXIFInfo exif;
    exif.Make = "before";
    exif.ImageUniqueID = "kept";
    EXPECT_EQ(ParseJpeg({0xFF, 0xD8, 0xFF, 0xD9}, exif), kNoExif);
    EXPECT_EQ(exif.Make, "");
    EXPECT_EQ(exif.ImageUniqueID, "kept");
}

TEST(ExifParser, AJpegWithoutAnApp1MarkerHoldsNoExif) {
    ExpectMake(samples::TinyJpeg(), kNoExif, "");
}

TEST(ExifParser, AnApp1MarkerRightBeforeTheEndIsCorrupt) {
    ExpectMake({0xFF, 0xD8, 0xFF, 0xE1, 0xFF, 0xD9}, kCorruptExif, "");
}

TEST(ExifParser, TheSegmentIsAtLeast16BytesLongAndEndsInsideTheFile) {
    const FileBytes jpeg = LeicaJpeg();
    const std::size_t rest = jpeg.size() - 4;  // from the length field on
    for (const std::size_t length : {std::size_t{16}, std::size_t{17}, rest - 1, rest}) {
        ExpectMake(WithSegmentLength(jpeg, length), 0, kLeica);
    }
    for (const std::size_t length : {std::size_t{0}, std::size_t{15}, rest + 1, std::size_t{65535}}) {
        ExpectMake(WithSegmentLength(jpeg, length), kCorruptExif, "");
    }
}

TEST(ExifParser, ValuesAfterTheSegmentButInsideTheFileAreRead) {
    // A segment of sixteen bytes ends with the TIFF header: IFD0 and its text follow it.
    ExpectMake(WithSegmentLength(LeicaJpeg(), 16), 0, kLeica);
}

TEST(ExifParser, TheMarkerIsFoundAtAnyBytePosition) {
    for (std::uint8_t filler = 0; filler < 4; ++filler) {
        const FileBytes header = {0xFF, 0xFE, 0, static_cast<std::uint8_t>(2 + filler)};
        const FileBytes comment = Resized(header, header.size() + filler);
        ExpectMake(WithBytesBeforeApp1(LeicaJpeg(), comment), 0, kLeica);
    }
    ExpectMake(WithBytesBeforeApp1(LeicaJpeg(), {0xFF}), 0, kLeica);
}

TEST(ExifParser, AMarkerInsideAnEarlierSegmentIsMistakenForApp1) {
    ExpectMake(WithBytesBeforeApp1(LeicaJpeg(), {0xFF, 0xFE, 0, 6, 0xFF, 0xE1, 0, 3}), kCorruptExif, "");
    ExpectMake(WithBytesBeforeApp1(LeicaJpeg(), {0xFF, 0xFE, 0, 7, 'x', 0xFF, 0xE1, 0, 16}), kNoExif, "");
}

TEST(ExifParser, AByteStringIsParsedLikeBytes) {
    const FileBytes jpeg = LeicaJpeg();
    EXIFInfo exif;
    EXPECT_EQ(exif.parseFrom(std::string(jpeg.begin(), jpeg.end())), 0);
    EXPECT_EQ(exif.Make, kLeica);
}

TEST(ExifParser, TheSegmentBeginsWithTheExifHeader) {
    EXIFInfo exif;
    EXPECT_EQ(exif.parseFromEXIFSegment(nullptr, 100), kNoExif);
    for (std::size_t i = 0; i < 6; ++i) {
        FileBytes bad = OrientationBlock();
        bad[i] ^= 1U;
        EXPECT_EQ(ParseSegment(bad, exif), kNoExif) << i;
    }
    EXPECT_EQ(ParseSegment(Resized(OrientationBlock(), 5), exif), kNoExif);
    EXPECT_EQ(ParseSegment(Resized(OrientationBlock(), 6), exif), kCorruptExif);
}

TEST(ExifParser, TheTiffHeaderIsReadOnlyIfComplete) {
    FileBytes block = OrientationBlock();
    block[6] = 'X';
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(Resized(block, 13), exif), kCorruptExif);
    EXPECT_EQ(ParseSegment(Resized(block, 14), exif), kUnknownByteOrder);
    EXPECT_EQ(ParseSegment(Resized(block, 15), exif), kUnknownByteOrder);
}

TEST(ExifParser, TheByteOrderMarkIsTwiceTheSameLetter) {
    EXIFInfo exif;
    for (const std::array<std::uint8_t, 2> mark :
         {std::array<std::uint8_t, 2>{'M', 'I'}, {'I', 'M'}, {'i', 'i'}, {'X', 'X'}, {0, 0}}) {
        EXPECT_EQ(ParseSegment(samples::Serialize({.byte_order_mark = mark}), exif), kUnknownByteOrder);
    }
}

TEST(ExifParser, TheByteOrderIsStoredBeforeTheMagicNumberIsChecked) {
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(samples::Serialize({.magic = 43}), exif), kCorruptExif);
    EXPECT_TRUE(exif.LittleEndian);
    EXPECT_EQ(ParseSegment(samples::Serialize({.order = ByteOrder::kBigEndian, .magic = 41}), exif),
              kCorruptExif);
    EXPECT_FALSE(exif.LittleEndian);
}

TEST(ExifParser, AllOfIFD0MustLieInside) {
    for (const std::size_t size : {14U, 15U, 16U, 28U, 31U}) {
        EXIFInfo exif;
        EXPECT_EQ(ParseSegment(Resized(OrientationBlock(), size), exif), kCorruptExif) << size;
        EXPECT_EQ(exif.Orientation, 0) << size;
    }
    for (const std::size_t size : {32U, 33U}) {
        EXIFInfo exif;
        EXPECT_EQ(ParseSegment(Resized(OrientationBlock(), size), exif), 0) << size;
        EXPECT_EQ(exif.Orientation, 6) << size;
    }
}

TEST(ExifParser, AnEmptyIFD0Needs6Bytes) {
    const FileBytes block = samples::Serialize({.with_exif_ifd = false});
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(Resized(block, 19), exif), kCorruptExif);
    EXPECT_EQ(ParseSegment(Resized(block, 20), exif), 0);
    EXPECT_EQ(ParseSegment(Resized(block, 21), exif), 0);
}

TEST(ExifParser, AnIFD0OffsetThatIsOutsideOrWrapsIsCorrupt) {
    // The TIFF header is at byte 6, so 0xFFFFFFFA would wrap to 0, and 0xFFFFFFFE to 4, where there is a
    // count of 0.
    for (const std::uint32_t offset : {25U, 26U, 27U, 0xFFFFFFF9U, 0xFFFFFFFAU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
        EXIFInfo exif;
        EXPECT_EQ(
            ParseSegment(samples::Serialize({.with_exif_ifd = false, .first_ifd_offset = offset}), exif),
            kCorruptExif)
            << offset;
    }
}

TEST(ExifParser, TooLargeAnIFD0CountIsCorrupt) {
    for (const std::uint16_t count : Numbers{2, 0xFFFF}) {
        EXIFInfo exif;
        EXPECT_EQ(ParseSegment(samples::Serialize({.ifd0 = {samples::Short(kOrientation, 6)},
                                                   .with_exif_ifd = false,
                                                   .ifd0_count = count}),
                               exif),
                  kCorruptExif);
        EXPECT_EQ(exif.Orientation, 0);
    }
}

TEST(ExifParser, WithoutAnExifIFDOnlyIFD0IsRead) {
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(OrientationBlock(), exif), 0);
    EXPECT_EQ(exif.Orientation, 6);
    EXPECT_EQ(exif.ExposureTime, (Rational{0, 1}));
}

TEST(ExifParser, AnExifIFDWithFewerThan4BytesLeftCountsAsMissing) {
    ExpectIso(Resized(IsoBlock(), 32), 0, 0);
    ExpectIso(Resized(IsoBlock(), 35), 0, 0);
    ExpectIso(Resized(IsoBlock(), 36), kCorruptExif, 0);
}

TEST(ExifParser, AllOfTheExifIFDMustLieInside) {
    ExpectIso(Resized(IsoBlock(), 49), kCorruptExif, 0);
    ExpectIso(Resized(IsoBlock(), 50), 0, 640);
    ExpectIso(Resized(IsoBlock(), 51), 0, 640);
}

TEST(ExifParser, AnExifIFDWhoseOffsetIsOutsideOrWrapsCountsAsMissing) {
    for (const std::uint32_t offset : {41U, 44U, 0xFFFFFFF9U, 0xFFFFFFFAU, 0xFFFFFFFFU}) {
        ExpectIso(IsoBlock(samples::Long(kExifPointer, offset)), 0, 0);
    }
}

TEST(ExifParser, TooLargeAnExifCountIsCorruptAndKeepsIFD0) {
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(samples::Serialize({.ifd0 = {samples::Short(kOrientation, 6)},
                                               .exif = {samples::Short(kISOSpeedRatings, 640)},
                                               .exif_count = 2}),
                           exif),
              kCorruptExif);
    EXPECT_EQ(exif.Orientation, 6);
    EXPECT_EQ(exif.ISOSpeedRatings, 0);
}

TEST(ExifParser, ThePointerToTheExifIFDMayHaveAnyKnownType) {
    for (const std::uint16_t type : Numbers{1, 2, 3, 4, 5, 7, 9, 10}) {
        SCOPED_TRACE(type);
        ExpectIso(IsoBlock(samples::RawEntry(kExifPointer, type, 1, 26)), 0, 640);
    }
    for (const std::uint16_t type : Numbers{0, 6, 8, 11, 12, 13, 0x104}) {
        SCOPED_TRACE(type);
        ExpectIso(IsoBlock(samples::RawEntry(kExifPointer, type, 1, 26)), 0, 0);
    }
}

TEST(ExifParser, OfTwoPointersToExifIFDsTheLastCounts) {
    // With two entries, the EXIF IFD is 12 bytes further on.
    ExpectIso(
        samples::Serialize({.ifd0 = {samples::Long(kExifPointer, 0xFFFF), samples::Long(kExifPointer, 38)},
                            .exif = {samples::Short(kISOSpeedRatings, 640)}}),
        0, 640);
}

TEST(ExifParser, TheLinkOfIFD0IsNotFollowed) {
    FileBytes block = samples::Serialize({.exif = {samples::Ascii(kMake, "Leica")}});
    block.at(28) = 26;  // IFD0's link, to the EXIF IFD
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(block, exif), 0);
    EXPECT_EQ(exif.Make, "");
}

}  // namespace
