// SPDX-License-Identifier: MIT
#include "samples/camera_jpeg.h"

#include <algorithm>
#include <cstddef>

#include "samples/maker_note.h"
#include "tiff/tags.h"

namespace samples {

namespace {

// Exif 2.2 requires this tag in a JPEG; velmarcon does not read it.
constexpr std::uint16_t kFlashpixVersion = 40960;
constexpr std::uint16_t kColorSpace = 40961;
constexpr std::uint16_t kComponentsConfiguration = 37121;
constexpr std::uint16_t kThumbnailLength = 0x0202;

}  // namespace

std::vector<Entry> ShootingEntries(const Shot& shot, const std::vector<std::uint8_t>& maker_note) {
    return {
        Rationals(tag::kExposureTime, {shot.exposure_time}),
        Short(tag::kExposureProgram, shot.exposure_program),
        Short(tag::kISOSpeedRatings, shot.iso),
        Undefined(tag::kExifVersion, {'0', '2', '2', '0'}),
        Ascii(tag::kDateTimeDigitized, shot.date_time_digitized),
        SRationals(tag::kShutterSpeedValue, {shot.shutter_speed}),
        SRationals(tag::kExposureBiasValue, {shot.exposure_bias}),
        Rationals(tag::kMaxApertureValue, {shot.max_aperture}),
        Short(tag::kMeteringMode, shot.metering_mode),
        Short(tag::kLightSource, shot.light_source),
        Short(tag::kFlash, shot.flash),
        Rationals(tag::kFocalLength, {shot.focal_length}),
        Undefined(tag::kMakerNote, maker_note),
        Undefined(tag::kFileSource, {3}),
        Undefined(tag::kSceneType, {1}),
        Short(tag::kWhiteBalance, shot.white_balance),
        Rationals(tag::kDigitalZoomRatio, {shot.digital_zoom}),
        Short(tag::kFocalLengthIn35mmFilm, shot.focal_length_35mm),
        Short(tag::kSceneCaptureType, shot.scene_capture_type),
        Ascii(tag::kImageUniqueID, shot.image_unique_id),
    };
}

ExifBlock CameraExif(const Shot& shot) {
    ExifBlock block;
    block.ifd0 = {
        Ascii(tag::kMake, shot.make),
        Ascii(tag::kModel, shot.model),
        Short(tag::kOrientation, shot.orientation),
        Rationals(tag::kXResolution, {{72, 1}}),
        Rationals(tag::kYResolution, {{72, 1}}),
        Short(tag::kResolutionUnit, 2),
        Ascii(tag::kSoftware, shot.software),
        Ascii(tag::kDateTime, shot.date_time),
    };
    block.exif = ShootingEntries(shot, JpegMakerNote(shot));
    Set(block.exif, Rationals(tag::kShutterSpeedValue, {AsUnsigned(shot.shutter_speed)}));
    Set(block.exif, Rationals(tag::kExposureBiasValue, {AsUnsigned(shot.exposure_bias)}));
    Set(block.exif, Ascii(tag::kDateTimeOriginal, shot.date_time));
    Set(block.exif,
        Undefined(kComponentsConfiguration, {'1', '2', '3', '0'}));  // digits, as the camera writes it
    Set(block.exif, Undefined(kFlashpixVersion, {'0', '1', '0', '0'}));
    Set(block.exif, Short(kColorSpace, 1));
    Set(block.exif, Long(tag::kPixelXDimension, shot.pixel_x_dimension));
    Set(block.exif, Long(tag::kPixelYDimension, shot.pixel_y_dimension));
    SetThumbnail(block, TinyJpeg());
    return block;
}

void SetThumbnail(ExifBlock& block, const std::vector<std::uint8_t>& jpeg) {
    constexpr std::uint16_t kJpegCompression = 6;
    block.ifd1 = {
        Short(tag::kCompression, kJpegCompression),
        Rationals(tag::kXResolution, {{72, 1}}),
        Rationals(tag::kYResolution, {{72, 1}}),
        Short(tag::kResolutionUnit, 2),
        Long(kThumbnailLength, static_cast<std::uint32_t>(jpeg.size())),
    };
    block.thumbnail = jpeg;
}

ExifBlock EditedExif(const Shot& shot, EditedNote note) {
    ExifBlock block = CameraExif(shot);
    Set(block.ifd0, Ascii(tag::kSoftware, "Image editor 1.0"));
    if (note == EditedNote::kLost) {
        Remove(block.exif, tag::kMakerNote);
        return block;
    }
    std::vector<std::uint8_t> table = JpegMakerNote(shot);
    table.resize(kMakerNoteHeaderSize + TableSize(JpegMakerNoteEntries(shot)));
    Set(block.exif, Undefined(tag::kMakerNote, table));
    return block;
}

const std::vector<std::uint8_t>& TinyJpeg() {
    constexpr int kSide = 8;
    constexpr std::uint8_t kGrey = 128;
    static const std::vector<std::uint8_t> kJpeg = EncodeJpeg(
        {.width = kSide, .height = kSide, .samples = std::vector<std::uint8_t>(3UL * kSide * kSide, kGrey)});
    return kJpeg;
}

std::vector<std::uint8_t> CameraJpeg(std::span<const std::uint8_t> exif, std::span<const std::uint8_t> jpeg) {
    constexpr std::size_t kMarkerSize = 2;
    std::vector<std::uint8_t> bytes = {0xFF, 0xD8, 0xFF, 0xE1};
    AppendNumber(bytes, ByteOrder::kBigEndian, static_cast<std::uint32_t>(exif.size() + 2), 2);
    bytes.insert(bytes.end(), exif.begin(), exif.end());
    const auto rest = jpeg.subspan(std::min(jpeg.size(), kMarkerSize));
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}

std::vector<std::uint8_t> CameraJpeg(const ExifBlock& block, std::span<const std::uint8_t> jpeg) {
    return CameraJpeg(Serialize(block), jpeg);
}

}  // namespace samples
