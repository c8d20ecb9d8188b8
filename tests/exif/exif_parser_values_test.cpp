// SPDX-License-Identifier: MIT
// Tests where the bytes of a value come from: the entry itself, or an offset,
// which may be outside the block.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exif/exif_info.h"
#include "samples/camera_jpeg.h"
#include "samples/maker_note.h"
#include "tests/exif/parse_block.h"

namespace {

using ByteVector = std::vector<std::uint8_t>;

constexpr std::uint16_t kFNumber = 33437;
constexpr std::uint16_t kExifVersion = 36864;
constexpr std::uint16_t kDateTimeOriginal = 36867;
constexpr std::uint16_t kMakerNote = 37500;

EXIFInfo Parsed(ByteOrder order, const std::vector<samples::Entry>& exif_entries) {
    EXIFInfo exif;
    EXPECT_EQ(ParseSegment(samples::Serialize({.order = order, .exif = exif_entries}), exif), 0);
    return exif;
}

/// Up to 4 bytes in the entry, as they are in the file, and the resulting value.
struct Inline {
    std::string stored;
    std::string little;
    std::string big;
};

const std::array<Inline, 5> kInline = {{
    {std::string("abc\0", 4), std::string("abc\0", 4), std::string("\0cba", 4)},
    {"abc", "abc", std::string("\0cb", 3)},
    {"ab", "ab", std::string("\0\0", 2)},
    {"a", "a", std::string("\0", 1)},
    {"", "", ""},
}};

TEST(ExifValues, ShortTextsOfBigEndianFilesComeOutReversed) {
    for (const auto& [stored, little, big] : kInline) {
        const std::vector entries = {samples::AsciiUnterminated(kDateTimeOriginal, stored)};
        EXPECT_EQ(Parsed(ByteOrder::kLittleEndian, entries).DateTimeOriginal, little);
        EXPECT_EQ(Parsed(ByteOrder::kBigEndian, entries).DateTimeOriginal, big);
    }
}

TEST(ExifValues, ShortUndefinedBytesAreTheLowBytesOfTheValueField) {
    for (const auto& [stored, little, big] : kInline) {
        const std::vector entries = {samples::Undefined(kExifVersion, {stored.begin(), stored.end()})};
        EXPECT_EQ(Parsed(ByteOrder::kLittleEndian, entries).ExifVersion,
                  ByteVector(little.begin(), little.end()));
        EXPECT_EQ(Parsed(ByteOrder::kBigEndian, entries).ExifVersion, ByteVector(big.begin(), big.end()));
    }
}

/// Reads a text, UNDEFINED bytes and a rational from `offset`, text and bytes with `count`. The block ends
/// with "12345678" at offset 68, of which the last `missing` bytes are cut off.
EXIFInfo ReadAt(std::uint32_t offset, std::uint32_t count, std::size_t missing = 0) {
    const samples::ExifBlock block = {.exif = {samples::RawEntry(kFNumber, 5, 1, offset),
                                               samples::RawEntry(kExifVersion, 7, count, offset),
                                               samples::RawEntry(kDateTimeOriginal, 2, count, offset)}};
    ByteVector bytes = samples::Serialize(block);
    EXPECT_EQ(bytes.size(), 74U);
    bytes.insert(bytes.end(), {'1', '2', '3', '4', '5', '6', '7', '8'});

    EXIFInfo exif;
    exif.FNumber = {7, 9};
    exif.ExifVersion = {7};
    exif.DateTimeOriginal = "before";
    EXPECT_EQ(ParseSegment(Resized(bytes, bytes.size() - missing), exif), 0);
    return exif;
}

void ExpectNoBytes(const EXIFInfo& exif) {
    EXPECT_EQ(exif.DateTimeOriginal, "");
    EXPECT_EQ(exif.ExifVersion, ByteVector());
}

TEST(ExifValues, AValueMayEndWithTheLastByte) {
    const EXIFInfo exif = ReadAt(68, 8);
    EXPECT_EQ(exif.DateTimeOriginal, "12345678");
    EXPECT_EQ(exif.ExifVersion, (ByteVector{'1', '2', '3', '4', '5', '6', '7', '8'}));
    EXPECT_EQ(exif.FNumber, (Rational{0x34333231, 0x38373635}));
}

TEST(ExifValues, AValueOneByteBeforeTheEndIsComplete) {
    EXPECT_EQ(ReadAt(68, 7).DateTimeOriginal, "1234567");
    EXPECT_EQ(ReadAt(67, 8).FNumber, (Rational{0x33323100, 0x37363534}));
}

TEST(ExifValues, AValueThatReachesOutsideIsEmptyOrZero) {
    // The TIFF header is at byte 6, so offsets from 0xFFFFFFFA on would wrap; 0xFFFFFFF2 would wrap when the
    // size is added.
    for (const std::uint32_t offset : {69U, 76U, 77U, 0xFFFFFFF2U, 0xFFFFFFFAU, 0xFFFFFFFFU}) {
        SCOPED_TRACE(offset);
        const EXIFInfo exif = ReadAt(offset, 8);
        ExpectNoBytes(exif);
        EXPECT_EQ(exif.FNumber, (Rational{0, 0}));
    }
    const EXIFInfo cut = ReadAt(68, 8, 1);
    ExpectNoBytes(cut);
    EXPECT_EQ(cut.FNumber, (Rational{0, 0}));
}

TEST(ExifValues, ACountThatReachesOutsideOrWrapsGivesNoBytes) {
    // 6 + 68 + 0xFFFFFFBA is 4 in 32 bits.
    for (const std::uint32_t count : {9U, 0xFFFFFFBAU, 0xFFFFFFFFU}) {
        SCOPED_TRACE(count);
        ExpectNoBytes(ReadAt(68, count));
    }
}

TEST(ExifValues, LongValuesAreReadUntilTheirTotalExceedsTheFile) {
    // The segment has 98 bytes. All values begin at the same byte.
    const EXIFInfo exif = Parsed(ByteOrder::kLittleEndian,
                                 {samples::RawEntry(36867, 2, 40, 0), samples::RawEntry(36868, 2, 40, 0),
                                  samples::RawEntry(37521, 2, 19, 0), samples::RawEntry(42016, 2, 18, 0),
                                  samples::RawEntry(kMakerNote, 7, 5, 0)});
    EXPECT_EQ(exif.DateTimeOriginal.size(), 40U);
    EXPECT_EQ(exif.DateTimeDigitized.size(), 40U);
    EXPECT_EQ(exif.SubSecTimeOriginal, "") << "80 are taken: 19 are one too many";
    EXPECT_EQ(exif.ImageUniqueID.size(), 18U);
    EXPECT_TRUE(exif.MakerNote.empty());
}

TEST(ExifValues, ARationalOutsideIsZeroBeforeTheExposureRules) {
    const EXIFInfo exif = Parsed(ByteOrder::kLittleEndian, {samples::RawEntry(33434, 5, 1, 9999),
                                                            samples::RawEntry(37380, 5, 1, 9999)});
    EXPECT_EQ(exif.ExposureTime, (Rational{0, 0}));
    EXPECT_EQ(exif.ExposureBiasValue, (SRational{0, 3}));
}

TEST(ExifValues, TheCountOfARationalDoesNotMatter) {
    for (const std::uint32_t count : {0U, 2U, 0xFFFFFFFFU}) {
        samples::Entry entry = samples::Rationals(kFNumber, {{28, 10}});
        entry.count = count;
        EXPECT_EQ(Parsed(ByteOrder::kBigEndian, {entry}).FNumber, (Rational{28, 10}));
    }
}

TEST(ExifValues, TheMakerNoteIsLittleEndianInFilesOfEitherByteOrder) {
    const ByteVector note = samples::MakerNote({samples::Bytes(0x0303, {1, 2, 3, 4})});
    for (const auto order : {ByteOrder::kLittleEndian, ByteOrder::kBigEndian}) {
        const EXIFInfo exif = Parsed(order, {samples::Undefined(kMakerNote, note)});
        EXPECT_EQ(exif.MakerNote, note);
        EXPECT_EQ(exif.SerialNumber, 67305985U);
    }
}

TEST(ExifValues, EveryMakerNoteIsDecodedAtOnce) {
    const EXIFInfo exif =
        Parsed(ByteOrder::kLittleEndian,
               {samples::Undefined(kMakerNote, samples::MakerNote({samples::Long(0x0303, 3106091)})),
                samples::Undefined(kMakerNote, samples::MakerNote({samples::Long(0x0310, 0x0D)}))});
    EXPECT_EQ(exif.SerialNumber, 3106091U);
    EXPECT_EQ(exif.LensCode, 3);
}

TEST(ExifValues, AMakerNoteOutsideTheFileIsEmpty) {
    const EXIFInfo exif = Parsed(ByteOrder::kLittleEndian, {samples::RawEntry(kMakerNote, 7, 300, 0)});
    EXPECT_TRUE(exif.MakerNote.empty());
    EXPECT_EQ(exif.SerialNumber, 0U);
}

TEST(ExifValues, ACameraFileFillsTheRecord) {
    EXIFInfo exif;
    samples::Shot shot;
    shot.shutter_speed = {-229376, 65536};
    shot.exposure_bias = {-65536, 65536};
    EXPECT_EQ(ParseJpeg(samples::CameraJpeg(samples::CameraExif(shot)), exif), 0);
    EXPECT_TRUE(exif.LittleEndian);
    EXPECT_EQ(exif.Make, std::string("Leica Camera AG\0", 16));
    EXPECT_EQ(exif.Model, std::string("M8 Digital Camera\0", 18));
    EXPECT_EQ(exif.DateTimeOriginal, std::string("2007:08:02 22:13:49\0", 20));
    EXPECT_EQ(exif.ExposureTime, (Rational{4000, 1000000}));
    EXPECT_EQ(exif.ShutterSpeedValue, (Rational{4294737920, 65536})) << "the bits of a signed value";
    EXPECT_EQ(exif.ExposureBiasValue, (SRational{-2, 3})) << "-1 EV, by the rule of thirds";
    EXPECT_EQ(exif.MaxApertureValue, (Rational{131072, 65536}));
    EXPECT_EQ(exif.FocalLength, (Rational{50000, 1000}));
    EXPECT_EQ(exif.FileSource, 0) << "the camera writes UNDEFINED";
    EXPECT_EQ(exif.PixelXDimension, 3936U);
    EXPECT_EQ(exif.PixelYDimension, 2630U);
    EXPECT_EQ(exif.SerialNumber, 3106091U);
    EXPECT_EQ(exif.LensCodeBits, "100001");
    EXPECT_EQ(exif.Mn0312, (Rational{0xFFFF8000, 65536}));
}

}  // namespace
