// SPDX-License-Identifier: MIT
#include "batch/proof/expected_tags.h"

#include <cstdint>
#include <optional>

#include "base/byte_view.h"
#include "dng/ifd.h"
#include "dng/lens_tags.h"
#include "dng/maker_note_struct.h"
#include "dng/tag_values.h"
#include "exif/exposure_rules.h"
#include "exif/maker_note.h"
#include "input/preview.h"
#include "tiff/tags.h"

namespace {

/// In HostComputer of a file whose dark levels are removed.
constexpr const char* kProgramName = "velmarcon";

/// The tags that a repair makes of a camera's file.
class RepairedTags {
  public:
    RepairedTags(const CameraDng& camera, lensdb& lenses, sensdb& sensors)
        : camera_(camera), lenses_(lenses), maker_(&lenses, &sensors) {
        Copy(camera.ifd0(), tags_.ifd0);
        Copy(camera.raw_ifd(), tags_.sub_ifd);
        Copy(camera.exif(), tags_.exif_ifd);
    }

    void DescribeImages();
    void FixLens(const std::string& lens_code);
    void FixExposure();
    void MarkDarkLevelsRemoved() {
        maker_.AddIFDTag(&tags_.ifd0, tag::kHostComputer, std::string(kProgramName));
    }

    const ExpectedTags& tags() const { return tags_; }

  private:
    void Copy(const TiffDirectory& from, IFD& to);
    void AddRational(std::uint16_t tag, Rational value) {
        maker_.AddIFDTag(&tags_.exif_ifd, tag, value.numerator, value.denominator);
    }

    const CameraDng& camera_;
    const lensdb& lenses_;
    DNGlib maker_;  ///< of tags
    ExpectedTags tags_;
};

/// All but the tags that lead to directories of which a repair keeps nothing.
void RepairedTags::Copy(const TiffDirectory& from, IFD& to) {
    for (const auto& [tag, entry] : from.entries) {
        if (tag != tag::kGPSIFD && tag != tag::kInteroperabilityIFD) {
            maker_.AddIFDTag(&to, tag, entry.value.data(), entry.type,
                             static_cast<unsigned int>(entry.value.size()));
        }
    }
}

/// One strip an image, and 16 bits for the raw image.
void RepairedTags::DescribeImages() {
    constexpr unsigned short bits_per_sample = 16;
    const auto width = static_cast<unsigned int>(camera_.width());
    const auto height = static_cast<unsigned int>(camera_.height());
    constexpr auto bytes_per_pixel = static_cast<unsigned int>(sizeof(std::uint16_t));

    maker_.AddIFDTag(&tags_.ifd0, tag::kMakerNoteSafety, tag_values::kSafe);
    maker_.AddIFDTag(&tags_.ifd0, tag::kStripByteCounts, static_cast<unsigned int>(PreviewSampler::kSize));
    maker_.AddIFDTag(&tags_.ifd0, tag::kRowsPerStrip, static_cast<unsigned int>(PreviewSampler::kHeight));
    maker_.AddIFDTag(&tags_.sub_ifd, tag::kStripByteCounts, width * height * bytes_per_pixel);
    maker_.AddIFDTag(&tags_.sub_ifd, tag::kRowsPerStrip, height);
    maker_.AddIFDTag(&tags_.sub_ifd, tag::kBitsPerSample, bits_per_sample);
    tags_.sub_ifd.erase(tag::kLinearizationTable);
    for (IFD* const ifd : {&tags_.ifd0, &tags_.sub_ifd}) {
        maker_.AddIFDTag(ifd, tag::kStripOffsets, tag_values::kPlaceholder);
    }
    maker_.AddIFDTag(&tags_.ifd0, tag::kSubIFDs, tag_values::kPlaceholder);
    maker_.AddIFDTag(&tags_.ifd0, tag::kExifIFD, tag_values::kPlaceholder);
}

void RepairedTags::FixLens(const std::string& lens_code) {
    const auto note = DecodeMakerNote(ByteView(ifd::Bytes(tags_.exif_ifd, tag::kMakerNote)));
    const std::string code = note.LensCode() != 0 ? maker_note::LensCodeText(note.LensCode()) : lens_code;
    const auto* const lens = code.empty() ? nullptr : lens_tags::FindLens(lenses_, code);
    if (lens != nullptr) {
        const Rational focal_length = lens_tags::FocalLength(lens->FocalLength);
        maker_.AddIFDTag(&tags_.exif_ifd, tag::kLensMake, lens->Maker);
        maker_.AddIFDTag(&tags_.exif_ifd, tag::kLensModel, lens->Model);
        if (!lens->SerialNo.empty()) {
            maker_.AddIFDTag(&tags_.exif_ifd, tag::kLensSerialNumber, lens->SerialNo);
        }
        AddRational(tag::kFocalLength, focal_length);
        maker_.AddIFDTag(&tags_.exif_ifd, tag::kFocalLengthIn35mmFilm,
                         lens_tags::FocalLengthIn35mmFilm(focal_length));
    }
    const auto apertures = lens_tags::PictureApertures(
        lens, lens_tags::EstimatedFNumber(note.external_brightness.front(), note.measured_light.front()),
        static_cast<std::uint32_t>(note.approximate_f_number.back()));
    AddRational(tag::kFNumber, apertures.f_number);
    if (apertures.max_aperture) {
        AddRational(tag::kMaxApertureValue, *apertures.max_aperture);
    }
}

void RepairedTags::FixExposure() {
    if (const auto bias = ifd::FirstRational(tags_.exif_ifd, tag::kExposureBiasValue)) {
        const SRational thirds = ExposureBiasInThirds(*bias);
        maker_.AddIFDTag(&tags_.exif_ifd, tag::kExposureBiasValue, thirds.numerator, thirds.denominator);
    }
    if (const auto time = ifd::FirstRational(tags_.exif_ifd, tag::kExposureTime)) {
        AddRational(tag::kExposureTime, SnapExposureTime(AsUnsigned(*time)));
    }
}

}  // namespace

ExpectedTags TagsOfPair(ReadInputData& record, const RunSettings& settings, bool dark_frame, lensdb& lenses,
                        sensdb& sensors) {
    if (settings.lens_fix && record.Exif.LensCode == 0 && !settings.lens_code.empty()) {
        constexpr std::uint8_t lens_code_present = 1;
        record.Exif.LensCodeBits = settings.lens_code;
        record.Exif.LensCode = lens_code_present;
    }
    const std::uint16_t black_level = dark_frame ? 0 : settings.black_level;
    DNGlib dng(&record, &lenses, &sensors);
    dng.createDNGTree(settings.preview, settings.black_level_given, black_level, false,
                      settings.raw_model_variant, settings.lens_fix);
    return {dng.ifd0(), dng.sub_ifd(), dng.exif_ifd()};
}

ExpectedTags TagsOfRepair(const CameraDng& camera, const RunSettings& settings, bool dark_levels_removed,
                          lensdb& lenses, sensdb& sensors) {
    RepairedTags repaired(camera, lenses, sensors);
    if (dark_levels_removed) {
        repaired.MarkDarkLevelsRemoved();
    }
    if (settings.lens_fix) {
        repaired.FixLens(settings.lens_code);
    }
    repaired.FixExposure();
    repaired.DescribeImages();
    return repaired.tags();
}

bool HasDarkLevelsRemoved(const CameraDng& camera) {
    const auto entry = camera.ifd0().entries.find(tag::kHostComputer);
    if (entry == camera.ifd0().entries.end()) {
        return false;
    }
    const auto value = entry->second.value;
    return std::string(value.begin(), value.end()).find(kProgramName) != std::string::npos;
}
