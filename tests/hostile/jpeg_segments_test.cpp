// SPDX-License-Identifier: MIT
// JPEGs whose segments differ from the camera's in kind or order. The first APP1 marker counts wherever it
// is: such files are read correctly or refused, but never misread.
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exif/exif_info.h"
#include "samples/camera_jpeg.h"
#include "samples/exif_block.h"
#include "tests/exif/parse_block.h"
#include "tiff/tags.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kApp0 = 0xE0;
constexpr std::uint8_t kApp1 = 0xE1;
constexpr std::uint8_t kApp15 = 0xEF;
constexpr std::uint8_t kComment = 0xFE;
constexpr std::size_t kLongestPayload = 65533;

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

/// A segment whose length field is `length`, by default the correct one.
Bytes Segment(std::uint8_t marker, const Bytes& payload, std::size_t length) {
    return Bytes{0xFF, marker, static_cast<std::uint8_t>(length / 256),
                 static_cast<std::uint8_t>(length % 256)} +
           payload;
}

Bytes Segment(std::uint8_t marker, const Bytes& payload) {
    return Segment(marker, payload, payload.size() + 2);
}

Bytes ExifSegment(std::uint16_t iso) {
    return Segment(kApp1, samples::Serialize(samples::CameraExif({.iso = iso})));
}

Bytes XmpSegment() {
    const std::string text("http://ns.adobe.com/xap/1.0/\0<x:xmpmeta/>", 41);
    return Segment(kApp1, {text.begin(), text.end()});
}

/// `segments` between SOI and a tiny image.
Bytes Jpeg(const Bytes& segments) {
    const Bytes& image = samples::TinyJpeg();
    return Bytes{0xFF, 0xD8} + segments + Bytes(image.begin() + 2, image.end());
}

/// The ISO speed, or the error of parsing.
int IsoOrError(const Bytes& jpeg) {
    EXIFInfo exif;
    const int result = ParseJpeg(jpeg, exif);
    return result == 0 ? exif.ISOSpeedRatings : result;
}

TEST(JpegSegments, TheFirstOfSeveralExifBlocksCounts) {
    EXPECT_EQ(IsoOrError(Jpeg(ExifSegment(640) + ExifSegment(320) + ExifSegment(1250))), 640);
}

TEST(JpegSegments, XmpMayFollowTheExifBlockButNotPrecedeIt) {
    EXPECT_EQ(IsoOrError(Jpeg(ExifSegment(640) + XmpSegment())), 640);
    EXPECT_EQ(IsoOrError(Jpeg(XmpSegment() + ExifSegment(640))), EXIFInfo::kNoExif);
}

TEST(JpegSegments, TheExifBlockMayFillTheLargestSegment) {
    auto block = samples::Serialize(samples::CameraExif({.iso = 640}));
    block.resize(kLongestPayload);
    EXPECT_EQ(IsoOrError(Jpeg(Segment(kApp1, block))), 640);

    // A text that ends with the last byte of the segment, without padding.
    const std::string text(kLongestPayload - samples::kExifHeaderSize - 8 - 18, 'x');
    auto filled =
        samples::Serialize({.ifd0 = {samples::AsciiUnterminated(tag::kMake, text)}, .with_exif_ifd = false});
    filled.resize(kLongestPayload);
    EXIFInfo exif;
    EXPECT_EQ(ParseJpeg(Jpeg(Segment(kApp1, filled)), exif), 0);
    EXPECT_EQ(exif.Make, text);
}

TEST(JpegSegments, FillBytesBetweenSegmentsAreSkipped) {
    for (const std::size_t count : {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{100000}}) {
        EXPECT_EQ(IsoOrError(Jpeg(Bytes(count, 0xFF) + ExifSegment(640))), 640) << count;
        EXPECT_EQ(IsoOrError(Jpeg(ExifSegment(640) + Bytes(count, 0xFF))), 640) << count;
    }
}

TEST(JpegSegments, TheExifBlockMayFollowManyOtherSegments) {
    Bytes others;
    for (int i = 0; i < 100; ++i) {
        for (std::uint8_t marker = kApp0; marker <= kApp15; ++marker) {
            if (marker != kApp1) {
                others = others + Segment(marker, Bytes(1000, marker));
            }
        }
        others = others + Segment(kComment, Bytes(1000, 'c'));
    }
    EXPECT_EQ(IsoOrError(Jpeg(others + ExifSegment(640))), 640);
    EXPECT_EQ(IsoOrError(Jpeg(Segment(kComment, Bytes(kLongestPayload, 'c')) + ExifSegment(640))), 640);
}

TEST(JpegSegments, AnExifSegmentShorterThanItsHeadersIsCorrupt) {
    const auto block = samples::Serialize(samples::CameraExif({.iso = 640}));
    for (const std::size_t length : {0U, 1U, 2U, 15U}) {
        EXPECT_EQ(IsoOrError(Jpeg(Segment(kApp1, block, length))), EXIFInfo::kCorruptExif) << length;
    }
    // The lengths of segments before it are not checked.
    for (const std::size_t length : {0U, 1U, 2U, 65535U}) {
        EXPECT_EQ(IsoOrError(Jpeg(Segment(kApp0, {}, length) + ExifSegment(640))), 640) << length;
    }
}

TEST(JpegSegments, ASegmentThatRunsPastTheEndOfTheFileIsCorrupt) {
    const Bytes whole = ExifSegment(640);
    for (std::size_t length = 4; length < whole.size(); length += 7) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(IsoOrError(Bytes{0xFF, 0xD8} + cut + Bytes{0xFF, 0xD9}),
                  length + 2 == whole.size() ? 640 : EXIFInfo::kCorruptExif)
            << length;
    }
}

TEST(JpegSegments, AFileWithoutEndOfImageIsNotAJpeg) {
    Bytes jpeg = Jpeg(ExifSegment(640));
    jpeg.back() = 0;
    EXPECT_EQ(IsoOrError(jpeg), EXIFInfo::kNotAJpeg);
    EXPECT_EQ(IsoOrError(Jpeg(ExifSegment(640)) + Bytes{0}), EXIFInfo::kNotAJpeg);
}

}  // namespace
