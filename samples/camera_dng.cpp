// SPDX-License-Identifier: MIT
#include "samples/camera_dng.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "samples/camera_jpeg.h"
#include "samples/maker_note.h"
#include "samples/sensor_dump.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace samples {

namespace {

constexpr std::uint32_t kPreviewRowsPerStrip = 68;
constexpr std::uint32_t kPreviewRowBytes = 3 * kDngPreviewWidth;
constexpr std::uint32_t kRawRowsPerStrip = 16;
constexpr std::uint16_t kColourFilterArray = 32803;
constexpr std::uint16_t kStandardLightA = 17;
constexpr std::uint16_t kDaylightD65 = 21;

struct Strips {
    std::vector<std::uint32_t> offsets;
    std::vector<std::uint32_t> byte_counts;
};

/// Consecutive strips starting at `offset`; the last one holds the remaining rows.
Strips StripsOf(std::uint32_t offset, std::uint32_t rows, std::uint32_t rows_per_strip,
                std::uint32_t row_bytes) {
    Strips strips;
    for (std::uint32_t row = 0; row < rows; row += rows_per_strip) {
        strips.offsets.push_back(offset + (row * row_bytes));
        strips.byte_counts.push_back(std::min(rows_per_strip, rows - row) * row_bytes);
    }
    return strips;
}

Entry TenThousandths(std::uint16_t tag, const std::array<std::int32_t, 9>& numerators) {
    std::vector<SRational> values;
    values.reserve(numerators.size());
    for (const std::int32_t numerator : numerators) {
        values.push_back({numerator, 10000});
    }
    return SRationals(tag, values);
}

Entry Identity(std::uint16_t tag) {
    return SRationals(tag, {{1, 1}, {0, 1}, {0, 1}, {0, 1}, {1, 1}, {0, 1}, {0, 1}, {0, 1}, {1, 1}});
}

std::vector<Entry> PreviewIfd(const Shot& shot) {
    const Strips strips =
        StripsOf(kDngPreviewOffset, kDngPreviewHeight, kPreviewRowsPerStrip, kPreviewRowBytes);
    return {
        Long(tag::kNewSubFileType, 1),
        Long(tag::kImageWidth, kDngPreviewWidth),
        Long(tag::kImageLength, kDngPreviewHeight),
        Shorts(tag::kBitsPerSample, {8, 8, 8}),
        Short(tag::kCompression, 1),
        Short(tag::kPhotometricInterpretation, 2),
        Ascii(tag::kMake, shot.make),
        Ascii(tag::kModel, shot.model),
        Longs(tag::kStripOffsets, strips.offsets),
        Short(tag::kOrientation, shot.orientation),
        Short(tag::kSamplesPerPixel, 3),
        Long(tag::kRowsPerStrip, kPreviewRowsPerStrip),
        Longs(tag::kStripByteCounts, strips.byte_counts),
        Rationals(tag::kXResolution, {{72, 1}}),
        Rationals(tag::kYResolution, {{72, 1}}),
        Short(tag::kPlanarConfiguration, 1),
        Short(tag::kResolutionUnit, 2),
        Ascii(tag::kSoftware, shot.software),
        Ascii(tag::kArtist, ""),
        Long(tag::kSubIFDs, kDngRawIfdOffset),
        Ascii(tag::kCopyright, ""),
        Long(tag::kExifIFD, kDngExifIfdOffset),
        Short(tag::kSelfTimerMode, 0),
        Ascii(tag::kDateTimeOriginal, shot.date_time),
        Rationals(tag::kFocalPlaneXResolution, {{3729, 1}}),
        Rationals(tag::kFocalPlaneYResolution, {{3764, 1}}),
        Short(tag::kFocalPlaneResolutionUnit, 2),
        Bytes(tag::kTIFFEPStandardID, {0, 0, 0, 1}),
        Bytes(tag::kDNGVersion, {1, 0, 0, 0}),
        Ascii(tag::kUniqueCameraModel, shot.model),
        TenThousandths(tag::kColorMatrix1, {10469, -5314, 1280, -4326, 12176, 2419, -886, 2473, 7160}),
        TenThousandths(tag::kColorMatrix2, {7675, -2195, -305, -5860, 14118, 1857, -2425, 4007, 6578}),
        Identity(tag::kCameraCalibration1),
        Identity(tag::kCameraCalibration2),
        Rationals(tag::kAsShotNeutral, {shot.level_red, shot.level_green, shot.level_blue}),
        Rationals(tag::kBaselineNoise, {{1, 1}}),
        Rationals(tag::kBaselineSharpness, {{1, 1}}),
        Ascii(tag::kCameraSerialNumber, std::to_string(shot.serial_number)),
        Short(tag::kCalibrationIlluminant1, kStandardLightA),
        Short(tag::kCalibrationIlluminant2, kDaylightD65),
    };
}

std::vector<Entry> RawIfd() {
    const Strips strips = StripsOf(kDngRawOffset, kCroppedHeight, kRawRowsPerStrip, kCroppedWidth);
    const std::array<std::uint16_t, 256> table = LinearizationTable();
    return {
        Long(tag::kNewSubFileType, 0),
        Long(tag::kImageWidth, kCroppedWidth),
        Long(tag::kImageLength, kCroppedHeight),
        Short(tag::kBitsPerSample, 8),
        Short(tag::kCompression, 1),
        Short(tag::kPhotometricInterpretation, kColourFilterArray),
        Longs(tag::kStripOffsets, strips.offsets),
        Short(tag::kSamplesPerPixel, 1),
        Long(tag::kRowsPerStrip, kRawRowsPerStrip),
        Longs(tag::kStripByteCounts, strips.byte_counts),
        Rationals(tag::kXResolution, {{300, 1}}),
        Rationals(tag::kYResolution, {{300, 1}}),
        Short(tag::kPlanarConfiguration, 1),
        Short(tag::kResolutionUnit, 2),
        Shorts(tag::kCFARepeatPatternDim, {2, 2}),
        Bytes(tag::kCFAPattern, {0, 1, 1, 2}),
        Shorts(tag::kLinearizationTable, {table.begin(), table.end()}),
        Long(tag::kWhiteLevel, kSensorWhite),
        Shorts(tag::kDefaultCropOrigin, {2, 2}),
        Shorts(tag::kDefaultCropSize, {3916, 2634}),
        Long(tag::kBayerGreenSplit, 500),
        Rationals(tag::kAntiAliasStrength, {{0, 1}}),
    };
}

void PointAt(std::vector<Entry>& entries, std::uint16_t tag, std::uint32_t offset) {
    Entry* const pointer = Find(entries, tag);
    if (pointer != nullptr && !pointer->raw_field) {
        *pointer = Long(tag, offset);
    }
}

void Append(std::vector<std::uint8_t>& out, const std::vector<std::uint8_t>& bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

/// The TIFF header, the IFDs and their values.
std::vector<std::uint8_t> Head(const CameraDngFile& file) {
    const std::uint32_t raw_ifd = kDngIfd0Offset + TableSize(file.ifd0);
    const std::uint32_t exif_ifd = raw_ifd + TableSize(file.raw_ifd);
    const std::uint32_t values_offset = exif_ifd + TableSize(file.exif);
    std::vector<Entry> ifd0 = file.ifd0;
    PointAt(ifd0, tag::kSubIFDs, raw_ifd);
    PointAt(ifd0, tag::kExifIFD, exif_ifd);

    std::vector<std::uint8_t> head = {'I', 'I', tiff::kMagic, 0, kDngIfd0Offset, 0, 0, 0};
    std::vector<std::uint8_t> values;
    AppendIfd(ifd0, ByteOrder::kLittleEndian, values_offset, 0, head, values);
    AppendIfd(file.raw_ifd, ByteOrder::kLittleEndian, values_offset, 0, head, values);
    AppendIfd(file.exif, ByteOrder::kLittleEndian, values_offset, 0, head, values);
    Append(head, values);
    return head;
}

}  // namespace

CameraDngFile CameraDng(const Shot& shot, std::vector<std::uint8_t> preview, std::vector<std::uint8_t> raw) {
    return {.ifd0 = PreviewIfd(shot),
            .raw_ifd = RawIfd(),
            .exif = ShootingEntries(shot, DngMakerNote(shot)),
            .preview = std::move(preview),
            .raw = std::move(raw)};
}

std::vector<std::uint8_t> Serialize(const CameraDngFile& file) {
    std::vector<std::uint8_t> bytes = Head(file);
    if (bytes.size() > kDngPreviewOffset) {
        return {};
    }
    bytes.reserve(kCameraDngBytes);
    bytes.resize(kDngPreviewOffset);
    Append(bytes, file.preview);
    bytes.resize(kDngRawOffset);
    Append(bytes, file.raw);
    return bytes;
}

std::vector<std::uint8_t> PreviewOf(const Scene& scene) {
    constexpr std::size_t kBandBytes =
        std::size_t{kPreviewRowBytes} * (kDngPreviewHeight - kDngPreviewPictureHeight) / 2;
    std::vector<std::uint8_t> preview(kBandBytes);
    Append(preview, SrgbImage(scene).samples);
    preview.resize(std::size_t{kPreviewRowBytes} * kDngPreviewHeight);
    return preview;
}

}  // namespace samples
