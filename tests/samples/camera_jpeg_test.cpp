// SPDX-License-Identifier: MIT
#include "samples/camera_jpeg.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "base/byte_order.h"
#include "samples/maker_note.h"
#include "samples/scene.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

using Octets = std::vector<std::uint8_t>;

std::uint16_t TypeOf(const std::vector<samples::Entry>& entries, std::uint16_t tag) {
    const samples::Entry* const entry = samples::Find(entries, tag);
    return entry == nullptr ? std::uint16_t{0} : entry->type;
}

TEST(SampleCameraExif, HasTheCamerasTypes) {
    const samples::ExifBlock block = samples::CameraExif({});
    EXPECT_EQ(TypeOf(block.ifd0, tag::kMake), tiff::kAscii);
    EXPECT_EQ(TypeOf(block.exif, tag::kExposureTime), tiff::kRational);
    EXPECT_EQ(TypeOf(block.exif, tag::kShutterSpeedValue), tiff::kRational);
    EXPECT_EQ(TypeOf(block.exif, tag::kExposureBiasValue), tiff::kRational);
    EXPECT_EQ(TypeOf(block.exif, tag::kMaxApertureValue), tiff::kRational);
    EXPECT_EQ(TypeOf(block.exif, tag::kFileSource), tiff::kUndefined);
    EXPECT_EQ(TypeOf(block.exif, tag::kSceneType), tiff::kUndefined);
    EXPECT_EQ(TypeOf(block.exif, tag::kPixelXDimension), tiff::kLong);
    EXPECT_EQ(samples::Find(block.exif, tag::kImageUniqueID)->count, 33U);
    EXPECT_EQ(samples::Find(block.exif, tag::kFNumber), nullptr);
}

TEST(SampleCameraExif, StoresSignedValuesAsRationals) {
    samples::Shot shot;
    shot.shutter_speed = {-229376, 65536};
    shot.exposure_bias = {-65536, 65536};
    const samples::ExifBlock block = samples::CameraExif(shot);
    EXPECT_EQ(samples::Find(block.exif, tag::kShutterSpeedValue)->value,
              samples::Rationals(0, {{4294737920, 65536}}).value);
    EXPECT_EQ(samples::Find(block.exif, tag::kExposureBiasValue)->value,
              samples::Rationals(0, {{4294901760, 65536}}).value);
    EXPECT_EQ(samples::Find(block.exif, 37121)->value, (Octets{'1', '2', '3', '0'}));
}

TEST(SampleCameraExif, EndsWithTheThumbnailOfItsIfd1) {
    const samples::ExifBlock block = samples::CameraExif({});
    ASSERT_TRUE(std::ranges::is_sorted(block.ifd1, {}, &samples::Entry::tag));
    const Octets bytes = samples::Serialize(block);
    const auto tiff_file = std::span(bytes).subspan(samples::kExifHeaderSize);
    // Follows IFD0's link to IFD1, and the fifth entry there to the thumbnail.
    const std::size_t ifd0_entries = byte_order::GetLittle<std::uint16_t>(tiff_file.subspan(8, 2));
    const auto ifd1 = byte_order::GetLittle<std::uint32_t>(tiff_file.subspan(10 + 12 * ifd0_entries, 4));
    const auto entry = tiff_file.subspan(ifd1 + 2 + 12UL * 4, 12);
    EXPECT_EQ(byte_order::GetLittle<std::uint16_t>(entry), 0x0201);
    EXPECT_EQ(byte_order::GetLittle<std::uint16_t>(entry.subspan(2)), tiff::kShort);
    const auto offset = byte_order::GetLittle<std::uint32_t>(entry.subspan(8));
    EXPECT_TRUE(std::ranges::equal(tiff_file.subspan(offset), samples::TinyJpeg()));
}

TEST(SampleCameraExif, MayHaveLostItsMakerNoteToAnEditor) {
    EXPECT_EQ(samples::Find(samples::EditedExif({}, samples::EditedNote::kLost).exif, tag::kMakerNote),
              nullptr);
    const Octets whole = samples::JpegMakerNote({});
    const auto edited = samples::EditedExif({}, samples::EditedNote::kValuesOutside);
    constexpr std::ptrdiff_t table_end = 8 + 2 + 19 * 12 + 4;
    EXPECT_EQ(samples::Find(edited.exif, tag::kMakerNote)->value,
              Octets(whole.begin(), whole.begin() + table_end));
}

TEST(SampleCameraExif, EntriesAreInTagOrder) {
    const samples::ExifBlock block = samples::CameraExif({});
    EXPECT_TRUE(std::ranges::is_sorted(block.ifd0, {}, &samples::Entry::tag));
    EXPECT_TRUE(std::ranges::is_sorted(block.exif, {}, &samples::Entry::tag));
}

TEST(SampleCameraExif, CarriesTheJpegMakerNote) {
    samples::Shot shot;
    shot.serial_number = 42;
    EXPECT_EQ(samples::Find(samples::CameraExif(shot).exif, tag::kMakerNote)->value,
              samples::JpegMakerNote(shot));
}

TEST(SampleCameraJpeg, PutsTheBlockRightAfterSoi) {
    const Octets exif = samples::Serialize(samples::CameraExif({}));
    const Octets jpeg = samples::CameraJpeg(exif);
    EXPECT_EQ(Octets(jpeg.begin(), jpeg.begin() + 4), (Octets{0xFF, 0xD8, 0xFF, 0xE1}));
    EXPECT_EQ(byte_order::GetBig<std::uint16_t>(std::span(jpeg).subspan(4, 2)), exif.size() + 2);
    EXPECT_TRUE(std::ranges::equal(std::span(jpeg).subspan(6, exif.size()), exif));
    EXPECT_EQ(Octets(jpeg.end() - 2, jpeg.end()), (Octets{0xFF, 0xD9}));
}

TEST(SampleCameraJpeg, TheImageFollowsUnchanged) {
    const Octets picture = samples::EncodeJpeg(samples::SrgbImage(samples::Scene(96, 64)));
    ASSERT_GT(picture.size(), samples::TinyJpeg().size());
    const Octets jpeg = samples::CameraJpeg(samples::CameraExif({}), picture);
    EXPECT_TRUE(std::equal(picture.begin() + 2, picture.end(),
                           jpeg.end() - static_cast<std::ptrdiff_t>(picture.size()) + 2));
}

TEST(SampleCameraJpeg, AnImageWithoutPixelsGivesNothing) {
    EXPECT_TRUE(samples::EncodeJpeg({.width = 0, .height = 8}).empty());
}

}  // namespace
