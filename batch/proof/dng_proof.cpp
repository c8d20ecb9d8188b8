// SPDX-License-Identifier: MIT
#include "batch/proof/dng_proof.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <system_error>
#include <utility>

#include "base/error_codes.h"
#include "batch/proof/expected_tags.h"
#include "batch/proof/file_head.h"
#include "batch/proof/pair_rows.h"
#include "batch/proof/pixel_proof.h"
#include "dng/maker_note_struct.h"
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
    std::error_code error;
    return StateOf(bia, error) ||
           (error != std::errc::no_such_file_or_directory && error != std::errc::not_a_directory);
}

std::string PreviewDifference(const std::vector<std::uint8_t>& expected, const WrittenDng& dng) {
    return expected == dng.preview() ? "" : "its preview differs";
}

/// Compares `height` rows of the DNG with those that `expected_row` gives one after the other. Returns what
/// differs, an empty text if nothing does, and nothing when there was no row to compare with.
template <typename ExpectedRow>
std::optional<std::string> RowDifference(WrittenDng& dng, int width, int height, const ColumnLevels& levels,
                                         ExpectedRow expected_row) {
    auto rows = dng.Rows(static_cast<std::size_t>(width));
    PixelProof proof(levels);
    for (int y = 0; y < height; ++y) {
        const std::optional<std::span<const std::uint16_t>> expected = expected_row();
        if (!expected) {
            return std::nullopt;
        }
        const auto written = rows.Next();
        if (!written) {
            return WrittenDng::kUnreadable;
        }
        if (!proof.Next(*written, *expected)) {
            break;
        }
        dng.Observe(*written);
    }
    return dng.IsIntact() ? proof.difference() : WrittenDng::kUnreadable;
}

/// The same with an image in memory, of rows of `width` pixels.
std::string ImageDifference(WrittenDng& dng, std::span<const std::uint16_t> pixels, int width, int height,
                            const ColumnLevels& levels) {
    const auto next_row = [&] {
        const auto row = pixels.first(static_cast<std::size_t>(width));
        pixels = pixels.subspan(row.size());
        return row;
    };
    return RowDifference(dng, width, height, levels, next_row).value_or("");
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

/// The same with the camera's image, of which nothing is corrected.
std::string PlainDifference(const CameraDng& camera, WrittenDng& dng) {
    const ColumnLevels none;
    std::vector<std::uint16_t> row(static_cast<std::size_t>(camera.width()));
    std::size_t y = 0;
    const auto next_row = [&] {
        camera.GetRow(y++, row);
        return std::span<const std::uint16_t>(row);
    };
    return RowDifference(dng, camera.width(), camera.height(), none, next_row).value_or("");
}

}  // namespace

std::string DngProof::Check(const std::string& folder, const std::string& base, bool camera_dng,
                            const std::string& dng, const ByteObserver& observer) {
    pixels_only_ = false;
    return CheckAll(folder, base, camera_dng, dng, observer);
}

std::string DngProof::CheckPixels(const std::string& folder, const std::string& base, bool camera_dng,
                                  const std::string& dng) {
    pixels_only_ = true;
    return CheckAll(folder, base, camera_dng, dng, nullptr);
}

std::string DngProof::CheckAll(const std::string& folder, const std::string& base, bool camera_dng,
                               const std::string& dng, const ByteObserver& observer) {
    was_rewritten_ = false;
    WrittenDng written(observer);
    return camera_dng ? CheckRepair(folder + base + ".DNG", dng, written)
                      : CheckPair(folder, base, dng, written);
}

/// Or only finds the image.
std::string DngProof::CompareTags(const std::string& path, const ExpectedTags& tags, int width, int height,
                                  WrittenDng& dng) {
    if (pixels_only_) {
        return dng.FindImage(path, width, height);
    }
    std::string difference = dng.CompareTags(path, tags);
    was_rewritten_ = !difference.empty() && dng.HasOtherLength(tags);
    return difference;
}

std::string DngProof::CheckPair(const std::string& folder, const std::string& base, const std::string& path,
                                WrittenDng& dng) {
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
    if (const auto difference = CompareTags(path, tags, record.Width, record.Height, dng);
        !difference.empty()) {
        return DoesNotMatch(kPairSource, difference);
    }
    return SensorCorrections::AreMade(settings_, sensors_) ? CompareCorrectedPair(record, dng)
                                                           : ComparePair(record, dng);
}

std::string DngProof::ComparePair(const ReadInputData& record, WrittenDng& dng) {
    const ColumnLevels none;
    PairRows rows(record, !dng.preview().empty());
    auto difference = RowDifference(dng, record.Width, record.Height, none, [&] { return rows.Next(); });
    if (!difference || !rows.AreIntact()) {
        return CannotRead(rows.unreadable());
    }
    return DoesNotMatch(kPairSource,
                        difference->empty() ? PreviewDifference(rows.preview(), dng) : *difference);
}

/// The corrections take an image as a whole.
std::string DngProof::CompareCorrectedPair(ReadInputData& record, WrittenDng& dng) {
    record.ImageData = std::move(frame_);
    const int error = record.LoadRawFile();
    std::string result = error == 0
                             ? DoesNotMatch(kPairSource, CorrectedDifference(record, dng))
                             : CannotRead(error == kBiaDamaged ? record.BiaFileName : record.RawFileName);
    frame_ = std::move(record.ImageData);
    return result;
}

std::string DngProof::CorrectedDifference(ReadInputData& record, WrittenDng& dng) const {
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
    const auto difference = ImageDifference(dng, record.ImageData, record.Width, record.Height, levels);
    const bool compare_preview = difference.empty() && !dng.preview().empty();
    return compare_preview ? PreviewDifference(record.PreviewData, dng) : difference;
}

std::string DngProof::CheckRepair(const std::string& source, const std::string& path, WrittenDng& dng) {
    InputFile file;
    if (!file.Open(source) || file.size() > kLongestFile) {
        return CannotRead(kRepairSource);
    }
    source_.resize(static_cast<std::size_t>(file.size()));
    const auto camera = file.ReadStart(source_) ? CameraDng::Read(ByteView(source_)) : std::nullopt;
    return camera ? DoesNotMatch(kRepairSource, RepairDifference(*camera, path, dng))
                  : CannotRead(kRepairSource);
}

std::string DngProof::RepairDifference(const CameraDng& camera, const std::string& path, WrittenDng& dng) {
    SensorCorrections corrections(settings_, sensors_, FrameOf(camera));
    const bool corrected = SensorCorrections::AreMade(settings_, sensors_);
    const bool dark_field =
        corrected && settings_.dark_field_fix && !HasDarkLevelsRemoved(camera) && corrections.HasLevels();
    const auto tags = TagsOfRepair(camera, settings_, dark_field, lenses_, sensors_);
    if (auto difference = CompareTags(path, tags, camera.width(), camera.height(), dng);
        !difference.empty()) {
        return difference;
    }
    if (!pixels_only_) {
        if (auto difference = PreviewDifference(camera.Preview(), dng); !difference.empty()) {
            return difference;
        }
    }
    return corrected ? CorrectedDifference(camera, corrections, dark_field, dng)
                     : PlainDifference(camera, dng);
}

std::string DngProof::CorrectedDifference(const CameraDng& camera, SensorCorrections& corrections,
                                          bool dark_field, WrittenDng& dng) {
    const auto width = static_cast<std::size_t>(camera.width());
    const auto height = static_cast<std::size_t>(camera.height());
    pixel_memory::Resize(frame_, width * height);
    for (std::size_t y = 0; y < height; ++y) {
        camera.GetRow(y, std::span(frame_).subspan(y * width, width));
    }
    corrections.FixLines(frame_);
    const auto levels = dark_field ? corrections.RemoveDarkField(frame_) : ColumnLevels();
    return ImageDifference(dng, frame_, camera.width(), camera.height(), levels);
}
