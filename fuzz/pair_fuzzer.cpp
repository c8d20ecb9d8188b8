// SPDX-License-Identifier: MIT
// Converts a pair whose JPEG holds any EXIF block. The pixels are always the same and are read once. For
// speed, most inputs convert only the first rows.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include "app/conversion_run.h"
#include "app/pair_correction.h"
#include "app/run_settings.h"
#include "base/error_codes.h"
#include "dng/dnglib.h"
#include "errors/error_handler.h"
#include "exif/exif_info.h"
#include "fuzz/any_camera.h"
#include "fuzz/full_size_mark.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/input_bytes.h"
#include "fuzz/require.h"
#include "fuzz/scratch_folder.h"
#include "fuzz/written_dng.h"
#include "input/raw_layout.h"
#include "input/read_input_data.h"
#include "tiff/tags.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::int32_t kFewRows = 4;
/// SOI, an APP1 segment with `block`, EOI.
Bytes Jpeg(std::span<const std::uint8_t> block) {
    constexpr std::size_t longest_block = 0xFFFF - 2;
    block = block.first(std::min(block.size(), longest_block));
    const std::size_t length = block.size() + 2;
    Bytes jpeg = {0xFF,
                  0xD8,
                  0xFF,
                  0xE1,
                  static_cast<std::uint8_t>(length / 256),
                  static_cast<std::uint8_t>(length % 256)};
    jpeg.insert(jpeg.end(), block.begin(), block.end());
    jpeg.insert(jpeg.end(), {0xFF, 0xD9});
    return jpeg;
}

/// A RAW file in which neighbouring pixels differ and some are dark.
Bytes RawFile() {
    Bytes bytes(raw_layout::kFileBytes);
    for (std::size_t i = 0; i < raw_layout::kFileWords; ++i) {
        bytes[2 * i] = static_cast<std::uint8_t>(i * 7 % 251);
        bytes[2 * i + 1] = static_cast<std::uint8_t>(i / 64 % 64);
    }
    return bytes;
}

RunSettings SettingsOf(std::uint8_t options, std::uint8_t black_level) {
    RunSettings settings;
    settings.verbose = true;
    settings.preview = Bit(options, 0);
    settings.black_level_given = Bit(options, 1);
    settings.black_level = static_cast<std::uint16_t>(black_level * 257);
    settings.raw_model_variant = Bit(options, 2);
    settings.lens_fix = Bit(options, 3);
    settings.lens_code = Bit(options, 4) ? "100001" : "";
    settings.sensor_fix = Bit(options, 5);
    settings.dark_field_fix = settings.sensor_fix;
    settings.row_offset_estimation = Bit(options, 6);
    settings.pixel_line_test = Bit(options, 7);
    return settings;
}

/// What must be in the file regardless of the options.
void RequireShootingData(const WrittenDng& dng, const EXIFInfo& exif) {
    RequireText(dng.ifd0().At(tag::kMake), exif.Make);
    RequireText(dng.ifd0().At(tag::kSoftware), exif.Software);
    RequireText(dng.exif_ifd().At(tag::kImageUniqueID), exif.ImageUniqueID);
    Require(dng.ifd0().At(tag::kOrientation).Number() == exif.Orientation, "the orientation is the JPEG's");
    Require(dng.exif_ifd().At(tag::kISOSpeedRatings).Number() == exif.ISOSpeedRatings,
            "the ISO speed is the JPEG's");
    Require(dng.exif_ifd().At(tag::kMakerNote).value == exif.MakerNote, "the maker note is copied");
    const std::vector<std::uint32_t> time = {exif.ExposureTime.numerator, exif.ExposureTime.denominator};
    Require(dng.exif_ifd().At(tag::kExposureTime).Numbers() == time, "the exposure time is the JPEG's");
}

bool SameBytes(std::span<const std::uint8_t> a, std::span<const std::uint8_t> b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size()) == 0;
}

/// A card with one pair whose JPEG changes.
class Studio {
  public:
    Studio() : sensors_(AnyCamera(database_)) {
        card_.Write("L1.RAW", RawFile());
        ReadInputData record;
        record.Folder = card_.prefix();
        record.RawFileName = "L1.RAW";
        Require(record.LoadRawFile() == kNoError, "the pixels can be read");
        image_ = record.ImageData;
        for (const std::uint16_t pixel : image_) {
            image_bytes_.push_back(static_cast<std::uint8_t>(pixel % 256));
            image_bytes_.push_back(static_cast<std::uint8_t>(pixel / 256));
        }
        preview_ = record.PreviewData;
    }

    void Convert(const Bytes& jpeg, RunSettings settings, bool full_size) {
        card_.Write("L1.JPG", jpeg);
        settings.input = {card_.prefix(), {"L1.RAW"}};
        settings.output_folder = output_.prefix();
        ForgetUnknownCameras(sensors_);
        EXIFInfo exif;
        const bool readable = exif.parseFrom(jpeg.data(), static_cast<unsigned int>(jpeg.size())) == 0;
        const bool converted = full_size ? ConvertAll(settings) : ConvertFewRows(settings);
        Require(converted == readable, "a pair is converted when its JPEG can be read");
        if (converted) {
            Check(settings, exif, full_size ? raw_layout::kImageHeight : kFewRows);
        }
        output_.Remove("L1.DNG");
        Require(output_.Names().empty(), "nothing but the output is left");
    }

  private:
    /// Runs the conversion as main does. Returns whether it left a DNG.
    bool ConvertAll(const RunSettings& settings) {
        Require(ConversionRun(settings, lenses_, sensors_, errors_).Run() == 0, "the run ends well");
        return !output_.Names().empty();
    }

    /// Performs the same steps for a record with a short image. Returns whether that left a DNG.
    bool ConvertFewRows(const RunSettings& settings) {
        ReadInputData record;
        record.Verbose = settings.verbose;
        record.Folder = settings.input.folder;
        record.JpgFileName = "L1.JPG";
        record.RawFileName = "L1.RAW";
        if (const int error = record.LoadJPGExif(); error != 0) {
            Require(error == kExifDamaged, "an existing JPEG can only be damaged");
            return false;
        }
        record.Width = raw_layout::kImageWidth;
        record.Height = kFewRows;
        record.ImageSize = record.Width * record.Height;
        record.ImageData.assign(image_.begin(), image_.begin() + record.ImageSize);
        record.PreviewData = preview_;
        if (settings.sensor_fix) {
            const PairCorrection correction(settings, sensors_, errors_);
            Require(correction.Run("L1", settings.dark_field_fix, record) == 0, "the corrections end well");
        }
        if (settings.lens_fix && record.Exif.LensCode == 0 && !settings.lens_code.empty()) {
            record.Exif.LensCodeBits = settings.lens_code;
            record.Exif.LensCode = 1;
        }
        DNGlib dng(&record, &lenses_, &sensors_);
        dng.createDNGTree(settings.preview, settings.black_level_given, settings.black_level,
                          settings.verbose, settings.raw_model_variant, settings.lens_fix);
        dng.writeDNGTree(settings.output_folder);
        return !output_.Names().empty();
    }

    void Check(const RunSettings& settings, const EXIFInfo& exif, std::int32_t height) const {
        const WrittenDng dng(output_.Read("L1.DNG"), settings.preview);
        RequireShootingData(dng, exif);
        const auto raw = dng.Strip(dng.raw_ifd());
        const auto raw_bytes =
            static_cast<std::size_t>(raw_layout::kImageWidth * height) * sizeof(std::uint16_t);
        Require(raw.size() == raw_bytes, "the raw strip has the right size");
        Require(settings.sensor_fix || SameBytes(raw, std::span(image_bytes_).first(raw_bytes)),
                "without corrections the pixels are those of the sensor");
        Require(!settings.preview || SameBytes(dng.Strip(dng.ifd0()), preview_),
                "the preview matches the image");
    }

    ScratchFolder database_;
    ScratchFolder card_;
    ScratchFolder output_;
    lensdb lenses_ = AnyLens();
    sensdb sensors_;
    ErrorHandler errors_;
    std::vector<std::uint16_t> image_;  ///< at full size
    Bytes image_bytes_;                 ///< the same pixels as a file holds them
    Bytes preview_;
};

}  // namespace

void FuzzInput(std::span<const std::uint8_t> bytes) {
    static Studio studio;
    InputBytes input(bytes);
    const std::uint8_t options = input.NextByte();
    const std::uint8_t black_level = input.NextByte();
    const std::uint8_t mark_high = input.NextByte();
    const std::uint8_t mark_low = input.NextByte();
    studio.Convert(Jpeg(input.Rest()), SettingsOf(options, black_level),
                   mark_high * 256 + mark_low == FullSizeMark(input.Rest()));
}
