// SPDX-License-Identifier: MIT
#include "dng/camera_image.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/pixel.h"
#include "dng/dnglib.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tiff/tags.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using Pixels = std::vector<Pixel>;
using samples::Long;
using samples::Longs;
using samples::Short;
using samples::Shorts;
using support::SmallCameraDng;

IFD ReadIFD(InputFile& file, std::uint32_t offset) {
    DNGlib dng(nullptr, nullptr);
    IFD ifd;
    file.stream().seekg(offset);
    dng.GetIFDs(&file.stream(), &ifd);
    return ifd;
}

/// The images of a file whose last `missing` bytes are cut off; std::nullopt if they are rejected. They are
/// read into `earlier`.
std::optional<CameraImage> Read(const samples::CameraDngFile& camera, std::size_t missing = 0,
                                const CameraImage& earlier = {}) {
    Bytes bytes = samples::Serialize(camera);
    bytes.resize(bytes.size() - missing);
    const support::TempFolder folder;
    support::WriteFile(folder / "file", bytes);
    InputFile file;
    EXPECT_TRUE(file.Open(folder / "file"));
    const auto preview_ifd = ReadIFD(file, samples::kDngIfd0Offset);
    const auto raw_ifd = ReadIFD(file, samples::kDngIfd0Offset + samples::TableSize(camera.ifd0));
    CameraImage image = earlier;
    return ReadImages(file, preview_ifd, raw_ifd, image) ? std::optional(image) : std::nullopt;
}

/// A raw image of one row that holds `bytes`.
samples::CameraDngFile WithRow(const Bytes& bytes) {
    auto file = SmallCameraDng(static_cast<int>(bytes.size()), 1);
    file.raw = bytes;
    return file;
}

TEST(RawImage, GoesThroughTheLinearizationTable) {
    const auto image = Read(WithRow({0, 1, 2, 3, 5, 128, 254, 255}));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels, (Pixels{0, 0, 1, 2, 6, 4096, 16129, 16256}));
    EXPECT_EQ(image->width, 8);
    EXPECT_EQ(image->height, 1);
}

/// Samples that are neighbours or a multiple of 256 apart differ.
std::uint8_t SampleAt(std::size_t i) {
    return static_cast<std::uint8_t>(i + i / 251);
}

TEST(RawImage, OfManyPiecesIsReadCompletely) {
    constexpr int width = 1100;
    constexpr int height = 600;
    auto file = SmallCameraDng(width, height);
    file.raw.resize(static_cast<std::size_t>(width) * height);
    for (std::size_t i = 0; i < file.raw.size(); ++i) {
        file.raw[i] = SampleAt(i);
    }
    const auto image = Read(file);
    ASSERT_TRUE(image);
    ASSERT_EQ(image->pixels.size(), file.raw.size());
    for (std::size_t i = 0; i < file.raw.size(); ++i) {
        ASSERT_EQ(image->pixels[i], SampleAt(i) * SampleAt(i) / 4) << i;
    }
    EXPECT_FALSE(Read(file, 1));
}

TEST(RawImage, OfManyPiecesOfSixteenBitsIsReadCompletely) {
    constexpr int width = 1000;
    constexpr int height = 500;
    auto file = SmallCameraDng(width, height);
    Pixels pixels;
    for (std::size_t i = 0; i < static_cast<std::size_t>(width) * height; ++i) {
        pixels.push_back(static_cast<Pixel>(i * 31 + i / 65536));  // also differs a multiple of 65536 on
    }
    file.raw.resize(2 * pixels.size());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        file.raw[2 * i] = static_cast<std::uint8_t>(pixels[i] & 0xFF);
        file.raw[2 * i + 1] = static_cast<std::uint8_t>(pixels[i] >> 8);
    }
    samples::Remove(file.raw_ifd, tag::kLinearizationTable);
    samples::Set(file.raw_ifd, Short(tag::kBitsPerSample, 16));
    samples::Set(file.raw_ifd, Long(tag::kStripByteCounts, static_cast<std::uint32_t>(file.raw.size())));
    const auto image = Read(file);
    ASSERT_TRUE(image);
    EXPECT_TRUE(image->pixels == pixels);
}

TEST(RawImage, ReplacesAnEarlierOneOfAnySize) {
    const Bytes row = {0, 1, 2, 3, 5, 128, 254, 255};
    const Pixels pixels = {0, 0, 1, 2, 6, 4096, 16129, 16256};
    for (std::size_t size = 0; size <= 2 * row.size(); ++size) {
        CameraImage earlier;
        earlier.pixels.assign(size, 9999);
        const auto image = Read(WithRow(row), 0, earlier);
        ASSERT_TRUE(image) << size;
        EXPECT_EQ(image->pixels, pixels) << size;
    }
}

TEST(RawImage, GoesThroughWhateverTableTheFileHas) {
    auto file = WithRow({0, 1, 255});
    std::vector<Pixel> table(300);  // more entries than a byte can select
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = static_cast<std::uint16_t>(65535 - i);
    }
    samples::Set(file.raw_ifd, Shorts(tag::kLinearizationTable, table));
    ASSERT_TRUE(Read(file));
    EXPECT_EQ(Read(file)->pixels, (Pixels{65535, 65534, 65280}));
}

TEST(RawImage, OfSixteenBitsIsReadUnchanged) {
    auto file = SmallCameraDng(2, 1);
    file.raw = {0x34, 0x12, 0xFF, 0x3F};
    samples::Remove(file.raw_ifd, tag::kLinearizationTable);
    samples::Set(file.raw_ifd, Short(tag::kBitsPerSample, 16));
    samples::Set(file.raw_ifd, Long(tag::kStripByteCounts, 4));
    ASSERT_TRUE(Read(file));
    EXPECT_EQ(Read(file)->pixels, (Pixels{0x1234, 0x3FFF}));
    samples::Set(file.raw_ifd, Long(tag::kStripByteCounts, 3));
    EXPECT_FALSE(Read(file));
}

TEST(RawImage, OfSixteenBitsWithATableIsRefused) {
    auto file = SmallCameraDng(2, 1);
    file.raw = {0x34, 0x12, 0xFF, 0x3F};
    samples::Set(file.raw_ifd, Short(tag::kBitsPerSample, 16));
    samples::Set(file.raw_ifd, Long(tag::kStripByteCounts, 4));
    EXPECT_FALSE(Read(file));
    samples::Remove(file.raw_ifd, tag::kLinearizationTable);
    EXPECT_TRUE(Read(file));
}

TEST(RawImage, IsReadRowByRow) {
    const auto image = Read(SmallCameraDng(7, 5));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels, support::CameraLevels(7, 5));
    EXPECT_EQ(image->width, 7);
    EXPECT_EQ(image->height, 5);
}

TEST(RawImage, OfSeveralStripsIsOneBlockFromTheFirstOffsetOn) {
    auto file = SmallCameraDng(4, 3);
    samples::Set(file.raw_ifd, Longs(tag::kStripByteCounts, {8, 4}));
    samples::Set(file.raw_ifd, Longs(tag::kStripOffsets, {samples::kDngRawOffset, 0xFFFFFFFF}));
    ASSERT_TRUE(Read(file));
    EXPECT_EQ(Read(file)->pixels, support::CameraLevels(4, 3));
}

TEST(RawImage, MayHaveMoreBytesThanPixels) {
    auto file = SmallCameraDng(4, 3);
    file.raw.resize(20);
    samples::Set(file.raw_ifd, Long(tag::kStripByteCounts, 20));
    ASSERT_TRUE(Read(file));
    EXPECT_EQ(Read(file)->pixels, support::CameraLevels(4, 3));
}

TEST(RawImage, IsRefusedWhenItIsShortByOneByte) {
    auto file = SmallCameraDng(4, 3);
    EXPECT_TRUE(Read(file));
    EXPECT_FALSE(Read(file, 1));
    samples::Set(file.raw_ifd, Long(tag::kStripByteCounts, 11));
    EXPECT_FALSE(Read(file));
}

TEST(RawImage, IsRefusedWhenItBeginsAfterTheEnd) {
    auto file = SmallCameraDng(4, 3);
    for (const std::uint32_t offset : {samples::kDngRawOffset + 1, samples::kDngRawOffset + 12, 0xFFFFFFFF}) {
        samples::Set(file.raw_ifd, Long(tag::kStripOffsets, offset));
        EXPECT_FALSE(Read(file)) << offset;
    }
}

/// A change to the raw image's tags that makes the image unreadable.
struct Unknown {
    const char* name;
    std::function<void(std::vector<samples::Entry>&)> change;
};

void PrintTo(const Unknown& unknown, std::ostream* out) {
    *out << unknown.name;
}

Unknown With(const char* name, const samples::Entry& entry) {
    return {name, [entry](std::vector<samples::Entry>& ifd) { samples::Set(ifd, entry); }};
}

Unknown Without(const char* name, std::uint16_t tag) {
    return {name, [tag](std::vector<samples::Entry>& ifd) { samples::Remove(ifd, tag); }};
}

class UnknownRawImage : public testing::TestWithParam<Unknown> {};

TEST_P(UnknownRawImage, IsRefused) {
    auto file = SmallCameraDng(4, 4);
    ASSERT_TRUE(Read(file));
    GetParam().change(file.raw_ifd);
    EXPECT_FALSE(Read(file));
}

INSTANTIATE_TEST_SUITE_P(
    Changes, UnknownRawImage,
    testing::Values(
        Without("NoWidth", tag::kImageWidth), Without("NoHeight", tag::kImageLength),
        Without("NoStripOffsets", tag::kStripOffsets), Without("NoStripByteCounts", tag::kStripByteCounts),
        Without("NoBitsPerSample", tag::kBitsPerSample),
        Without("EightBitsWithoutTable", tag::kLinearizationTable),
        With("WidthZero", Long(tag::kImageWidth, 0)), With("HeightZero", Long(tag::kImageLength, 0)),
        With("TableOf255", Shorts(tag::kLinearizationTable, std::vector<Pixel>(255, 1))),
        With("TableOfLongs", Longs(tag::kLinearizationTable, std::vector<std::uint32_t>(256, 1))),
        With("TwelveBits", Short(tag::kBitsPerSample, 12)), With("Compressed", Short(tag::kCompression, 7)),
        With("WidthTooLarge", Long(tag::kImageWidth, 5)),
        // Products that fit into 32 bits only truncated, or not at all.
        With("WidthOfAllBits", Long(tag::kImageWidth, 0xFFFFFFFF)),
        With("WidthWhoseProductIsCutToNothing", Long(tag::kImageWidth, 0x40000000)),
        With("MoreStripBytesThanTheFileHas", Long(tag::kStripByteCounts, 0xFFFFFFFF)),
        With("StripBytesWhoseSumIsCutToSixteen", Longs(tag::kStripByteCounts, {0xFFFFFFFF, 17}))),
    testing::PrintToStringParamName());

TEST(RawImage, NeedsNoCompressionTag) {
    auto file = SmallCameraDng(4, 4);
    samples::Remove(file.raw_ifd, tag::kCompression);
    EXPECT_TRUE(Read(file));
}

/// The preview of a file whose IFD0 claims `bytes` for it, from `offset` on.
Bytes PreviewOf(std::uint32_t bytes, std::uint32_t offset = samples::kDngPreviewOffset) {
    auto file = SmallCameraDng(40, 4);
    samples::Set(file.ifd0, Long(tag::kStripOffsets, offset));
    samples::Set(file.ifd0, Long(tag::kStripByteCounts, bytes));
    const auto image = Read(file);
    EXPECT_TRUE(image);
    return image ? image->preview : Bytes();
}

TEST(Preview, IsTheBlockOfAllStrips) {
    const auto image = Read(SmallCameraDng(4, 4));
    ASSERT_TRUE(image);
    EXPECT_TRUE(image->preview == support::CameraPreview());
}

TEST(Preview, OfAnotherSizeIsPaddedWithZerosOrCut) {
    const Bytes whole = support::CameraPreview();
    Bytes padded(whole.begin(), whole.begin() + 1000);
    padded.resize(230400);
    EXPECT_TRUE(PreviewOf(1000) == padded);
    EXPECT_TRUE(PreviewOf(0) == Bytes(230400));
    EXPECT_TRUE(PreviewOf(230401) == whole);
    EXPECT_TRUE(PreviewOf(230500) == whole);
}

TEST(Preview, IsZeroWhereTheFileEnds) {
    const std::uint32_t file_size = samples::kDngRawOffset + 160;
    Bytes last_bytes = {support::CameraByte(38, 3), support::CameraByte(39, 3)};
    last_bytes.resize(230400);
    EXPECT_TRUE(PreviewOf(1000, file_size - 2) == last_bytes);
    EXPECT_TRUE(PreviewOf(1000, 0xFFFFFFFF) == Bytes(230400));
}

TEST(Preview, AndRawImageTogetherMayNotBeLongerThanTheFile) {
    constexpr std::uint32_t raw_bytes = 16;
    constexpr std::uint32_t file_size = samples::kDngRawOffset + raw_bytes;
    auto file = SmallCameraDng(4, 4);
    samples::Set(file.ifd0, Long(tag::kStripByteCounts, file_size - raw_bytes));
    EXPECT_TRUE(Read(file));
    for (const std::uint32_t bytes : {file_size - raw_bytes + 1, file_size, file_size + 1, 0xFFFFFFFF}) {
        samples::Set(file.ifd0, Long(tag::kStripByteCounts, bytes));
        EXPECT_FALSE(Read(file)) << bytes;
    }
}

TEST(Preview, WithoutStripsIsRefused) {
    for (const std::uint16_t tag : {tag::kStripOffsets, tag::kStripByteCounts}) {
        auto file = SmallCameraDng(4, 4);
        samples::Remove(file.ifd0, tag);
        EXPECT_FALSE(Read(file)) << tag;
    }
}

}  // namespace
