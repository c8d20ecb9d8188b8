// SPDX-License-Identifier: MIT
#include "batch/proof/dng_proof.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <utility>

#include "base/error_codes.h"
#include "batch/proof/dump_rows.h"
#include "batch/proof/expected_tags.h"
#include "batch/proof/file_head.h"
#include "batch/proof/pixel_proof.h"
#include "dng/maker_note_struct.h"
#include "input/preview.h"
#include "input/raw_layout.h"
#include "system/file_state.h"
#include "system/input_file.h"
#include "system/pixel_memory.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

std::string DoesNotMatch(const std::string& source, const std::string& difference) {
    return difference.empty() ? "" : "does not match " + source + ": " + difference;
}

std::string CannotRead(const std::string& source) {
    return "cannot be compared with " + source + ", which cannot be read";
}

constexpr const char* kPairSource = "its RAW file";
constexpr const char* kRepairSource = "the camera's DNG";

/// A conversion takes a dark frame unless it is certain that there is none.
bool HasDarkFrame(const std::string& bia) {
    return StateOf(bia) || (errno != ENOENT && errno != ENOTDIR);
}

/// What differs first between an image of rows of `width` pixels, less `levels`, and the one in a DNG.
std::string ImageDifference(std::span<const std::uint16_t> pixels, int width, const ColumnLevels& levels,
                            std::span<const std::uint8_t> written) {
    const auto columns = static_cast<std::size_t>(width);
    PixelProof proof(written, columns, levels);
    while (!pixels.empty() && proof.Next(pixels.first(columns))) {
        pixels = pixels.subspan(columns);
    }
    return proof.difference();
}

std::string PreviewDifference(std::span<const std::uint8_t> expected, std::span<const std::uint8_t> written) {
    return std::ranges::equal(expected, written) ? "" : "its preview differs";
}

SensorFrame FrameOf(const CameraDng& camera) {
    const auto note = camera.exif().entries.find(tag::kMakerNote);
    const ByteView bytes(note == camera.exif().entries.end() ? std::span<const std::uint8_t>()
                                                             : note->second.value);
    const auto speed = camera.exif().entries.find(tag::kISOSpeedRatings);
    const bool has_speed = speed != camera.exif().entries.end() && speed->second.type == tiff::kShort;
    const std::uint32_t iso = has_speed ? camera.exif().Number(tag::kISOSpeedRatings).value_or(0) : 0;
    return {DecodeMakerNote(bytes).serial_number, static_cast<std::uint16_t>(iso), camera.width(),
            camera.height()};
}

/// What differs first between the camera's image, of which nothing is corrected, and the one in a DNG.
std::string RepairedDifference(const CameraDng& camera, std::span<const std::uint8_t> written) {
    const ColumnLevels none;
    std::vector<std::uint16_t> row(static_cast<std::size_t>(camera.width()));
    PixelProof proof(written, row.size(), none);
    const auto height = static_cast<std::size_t>(camera.height());
    for (std::size_t y = 0; y < height; ++y) {
        camera.GetRow(y, row);
        if (!proof.Next(row)) {
            break;
        }
    }
    return proof.difference();
}

}  // namespace

std::string DngProof::Check(const std::string& folder, const std::string& base, bool camera_dng,
                            std::span<const std::uint8_t> dng) {
    return camera_dng ? CheckRepair(folder + base + ".DNG", ByteView(dng))
                      : CheckPair(folder, base, ByteView(dng));
}

std::string DngProof::CheckPair(const std::string& folder, const std::string& base, ByteView dng) {
    ReadInputData record;
    record.Folder = folder;
    record.RawFileName = base + ".RAW";
    record.BiaFileName = base + ".BIA";
    record.JpgFileName = base + ".JPG";
    record.SubtractBia = settings_.black_level_given && HasDarkFrame(folder + record.BiaFileName);
    record.Width = raw_layout::kImageWidth;
    record.Height = raw_layout::kImageHeight;
    if (record.LoadJPGExif() != 0) {
        return CannotRead(record.JpgFileName);
    }
    const auto tags = TagsOfPair(record, settings_, record.SubtractBia, lenses_, sensors_);
    WrittenImages images;
    if (const auto difference = TagDifference(tags, dng, images); !difference.empty()) {
        return DoesNotMatch(kPairSource, difference);
    }
    return SensorCorrections::AreMade(settings_, sensors_) ? CheckCorrectedPixels(record, images)
                                                           : CheckPixelsAsTheyAre(record, images);
}

/// Row by row from the files, without memory for an image.
std::string DngProof::CheckPixelsAsTheyAre(const ReadInputData& record, const WrittenImages& images) const {
    DumpRows raw;
    DumpRows dark;
    if (!raw.Open(record.Folder + record.RawFileName)) {
        return CannotRead(record.RawFileName);
    }
    if (record.SubtractBia && !dark.Open(record.Folder + record.BiaFileName)) {
        return CannotRead(record.BiaFileName);
    }
    dark.CutAt(raw.size());

    const ColumnLevels none;
    PixelProof proof(images.raw, raw_layout::kImageWidth, none);
    std::vector<std::uint8_t> preview(images.preview.size());
    PreviewSampler sampler(record.Width, record.Height, preview);
    std::vector<std::uint16_t> difference(raw_layout::kImageWidth);
    for (std::int32_t y = 0; y < record.Height; ++y) {
        const auto row = raw.Next();
        if (!row) {
            return CannotRead(record.RawFileName);
        }
        if (!preview.empty()) {
            sampler.AddRow(y, *row);
        }
        auto expected = *row;
        if (record.SubtractBia) {
            const auto dark_row = dark.Next();
            if (!dark_row) {
                return CannotRead(record.BiaFileName);
            }
            SubtractDark(*row, *dark_row, difference);
            expected = difference;
        }
        if (!proof.Next(expected)) {
            return DoesNotMatch(kPairSource, proof.difference());
        }
    }
    return DoesNotMatch(kPairSource, PreviewDifference(preview, images.preview));
}

/// The corrections take an image as a whole.
std::string DngProof::CheckCorrectedPixels(ReadInputData& record, const WrittenImages& images) {
    record.ImageData = std::move(frame_);
    const int error = record.LoadRawFile();
    const std::string result =
        error == 0 ? CompareCorrected(record, images)
                   : CannotRead(error == kBiaDamaged ? record.BiaFileName : record.RawFileName);
    frame_ = std::move(record.ImageData);
    return result;
}

std::string DngProof::CompareCorrected(ReadInputData& record, const WrittenImages& images) const {
    SensorCorrections corrections(
        settings_, sensors_,
        {record.Exif.SerialNumber, record.Exif.ISOSpeedRatings, record.Width, record.Height});
    corrections.FixLines(record.ImageData);
    if (settings_.dark_field_creation) {
        sensors_.CalcSensLevel(&record);
    }
    ColumnLevels levels;
    if (settings_.dark_field_fix && !record.SubtractBia && corrections.HasLevels()) {
        levels = corrections.RemoveDarkField(record.ImageData);
    }
    const auto difference = ImageDifference(record.ImageData, record.Width, levels, images.raw);
    return DoesNotMatch(kPairSource, difference.empty() && !images.preview.empty()
                                         ? PreviewDifference(record.PreviewData, images.preview)
                                         : difference);
}

std::string DngProof::CheckRepair(const std::string& path, ByteView dng) {
    InputFile file;
    if (!file.Open(path) || file.size() > kLongestFile) {
        return CannotRead(kRepairSource);
    }
    source_.resize(static_cast<std::size_t>(file.size()));
    const auto camera = file.ReadStart(source_) ? CameraDng::Read(ByteView(source_)) : std::nullopt;
    return camera ? CompareRepaired(*camera, dng) : CannotRead(kRepairSource);
}

std::string DngProof::CompareRepaired(const CameraDng& camera, ByteView dng) {
    SensorCorrections corrections(settings_, sensors_, FrameOf(camera));
    const bool corrected = SensorCorrections::AreMade(settings_, sensors_);
    const bool dark_field =
        corrected && settings_.dark_field_fix && !HasDarkLevelsRemoved(camera) && corrections.HasLevels();
    const auto tags = TagsOfRepair(camera, settings_, dark_field, lenses_, sensors_);
    WrittenImages images;
    auto difference = TagDifference(tags, dng, images);
    if (difference.empty()) {
        difference = PreviewDifference(camera.Preview(), images.preview);
    }
    if (difference.empty()) {
        difference = corrected ? CorrectedDifference(camera, corrections, dark_field, images.raw)
                               : RepairedDifference(camera, images.raw);
    }
    return DoesNotMatch(kRepairSource, difference);
}

std::string DngProof::CorrectedDifference(const CameraDng& camera, SensorCorrections& corrections,
                                          bool dark_field, std::span<const std::uint8_t> raw) {
    const auto width = static_cast<std::size_t>(camera.width());
    const auto height = static_cast<std::size_t>(camera.height());
    pixel_memory::Resize(frame_, width * height);
    for (std::size_t y = 0; y < height; ++y) {
        camera.GetRow(y, std::span(frame_).subspan(y * width, width));
    }
    corrections.FixLines(frame_);
    const auto levels = dark_field ? corrections.RemoveDarkField(frame_) : ColumnLevels();
    return ImageDifference(frame_, camera.width(), levels, raw);
}
