// SPDX-License-Identifier: MIT
// Builds the tag tree of a converted pair: all tags of the DNG and the sources
// of their values.
#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <string>

#include "base/pixel.h"
#include "dng/color_matrices.h"
#include "dng/dnglib.h"
#include "dng/ifd.h"
#include "dng/lens_tags.h"
#include "dng/tag_values.h"
#include "exif/exif_info.h"
#include "exif/lensdb.h"
#include "input/preview.h"
#include "input/read_input_data.h"
#include "tiff/rational.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace {

constexpr const char* kModel = "M8 Digital Camera";
constexpr const char* kRawVariantModel = "M8RAW Digital Camera";

/// Adds the tags that every image needs, raw image and preview alike.
void AddStripTags(IFD& ifd) {
    using namespace tag_values;
    ifd::Add(ifd, tag::kCompression, kUncompressed);
    ifd::Add(ifd, tag::kStripOffsets, kPlaceholder);
    ifd::Add(ifd, tag::kPlanarConfiguration, kInterleaved);
    ifd::Add(ifd, tag::kResolutionUnit, kInch);
}

/// Adds the tags of the raw image, except the black level.
void AddRawImageTags(const ReadInputData& input, std::uint32_t white_level, IFD& ifd) {
    using namespace tag_values;
    const auto width = static_cast<std::uint32_t>(input.Width);
    const auto height = static_cast<std::uint32_t>(input.Height);
    const std::array crop_size = {static_cast<std::uint16_t>(width - 2 * kCropMargin),
                                  static_cast<std::uint16_t>(height - 2 * kCropMargin)};
    constexpr std::array crop_origin = {kCropMargin, kCropMargin};
    constexpr std::uint16_t samples_per_pixel = 1;
    const std::uint32_t strip_bytes = static_cast<std::uint32_t>(sizeof(Pixel)) * width * height;

    ifd::Add(ifd, tag::kNewSubFileType, kFullImage);
    ifd::Add(ifd, tag::kImageWidth, width);
    ifd::Add(ifd, tag::kImageLength, height);
    ifd::Add(ifd, tag::kBitsPerSample, kRawBitsPerSample);
    ifd::Add(ifd, tag::kPhotometricInterpretation, kColorFilterArray);
    ifd::Add(ifd, tag::kSamplesPerPixel, samples_per_pixel);
    ifd::Add(ifd, tag::kRowsPerStrip, height);
    ifd::Add(ifd, tag::kStripByteCounts, strip_bytes);
    ifd::Add(ifd, tag::kXResolution, kRawResolution);
    ifd::Add(ifd, tag::kYResolution, kRawResolution);
    ifd::Add(ifd, tag::kCFARepeatPatternDim, kTwoByTwo);
    ifd::Add(ifd, tag::kCFAPattern, kRedGreenGreenBlue);
    ifd::Add(ifd, tag::kWhiteLevel, white_level);
    ifd::Add(ifd, tag::kDefaultCropOrigin, crop_origin);
    ifd::Add(ifd, tag::kDefaultCropSize, crop_size);
    ifd::Add(ifd, tag::kBayerGreenSplit, kBayerGreenSplit);
    ifd::Add(ifd, tag::kAntiAliasStrength, kNoAntiAliasing);
    AddStripTags(ifd);
}

void AddPreviewTags(IFD& ifd0) {
    using namespace tag_values;
    constexpr std::array<std::uint16_t, 3> bits_per_sample = {8, 8, 8};
    constexpr std::uint32_t width = PreviewSampler::kWidth;
    constexpr std::uint32_t height = PreviewSampler::kHeight;
    constexpr std::uint32_t strip_bytes = PreviewSampler::kSize;

    ifd::Add(ifd0, tag::kNewSubFileType, kReducedImage);
    ifd::Add(ifd0, tag::kImageWidth, width);
    ifd::Add(ifd0, tag::kImageLength, height);
    ifd::Add(ifd0, tag::kBitsPerSample, bits_per_sample);
    ifd::Add(ifd0, tag::kPhotometricInterpretation, kRgb);
    ifd::Add(ifd0, tag::kSamplesPerPixel, static_cast<std::uint16_t>(bits_per_sample.size()));
    ifd::Add(ifd0, tag::kRowsPerStrip, height);
    ifd::Add(ifd0, tag::kStripByteCounts, strip_bytes);
    ifd::Add(ifd0, tag::kXResolution, kPreviewResolution);
    ifd::Add(ifd0, tag::kYResolution, kPreviewResolution);
    ifd::Add(ifd0, tag::kSubIFDs, kPlaceholder);
    AddStripTags(ifd0);
}

void AddMainTags(const EXIFInfo& exif, bool raw_model_variant, IFD& ifd0) {
    using namespace tag_values;
    ifd::Add(ifd0, tag::kMake, exif.Make);
    ifd::Add(ifd0, tag::kModel, raw_model_variant ? kRawVariantModel : kModel);
    ifd::Add(ifd0, tag::kOrientation, exif.Orientation);
    ifd::Add(ifd0, tag::kSoftware, exif.Software);
    ifd::Add(ifd0, tag::kArtist, "");
    ifd::Add(ifd0, tag::kCopyright, "");
    ifd::Add(ifd0, tag::kExifIFD, kPlaceholder);
    ifd::Add(ifd0, tag::kSelfTimerMode, kNoSelfTimer);
    ifd::Add(ifd0, tag::kDateTimeOriginal, exif.DateTimeOriginal);
    ifd::Add(ifd0, tag::kFocalPlaneXResolution, kFocalPlaneXResolution);
    ifd::Add(ifd0, tag::kFocalPlaneYResolution, kFocalPlaneYResolution);
    ifd::Add(ifd0, tag::kFocalPlaneResolutionUnit, kInch);
    ifd::Add(ifd0, tag::kTIFFEPStandardID, kTiffEpStandard);
    ifd::Add(ifd0, tag::kDNGVersion, kDngVersion);
    ifd::Add(ifd0, tag::kUniqueCameraModel, exif.Model);
    ifd::Add(ifd0, tag::kCameraSerialNumber, std::to_string(std::bit_cast<std::int32_t>(exif.SerialNumber)));
    ifd::Add(ifd0, tag::kMakerNoteSafety, kSafe);
}

void AddColorTags(const EXIFInfo& exif, bool raw_model_variant, IFD& ifd0) {
    using namespace tag_values;
    const auto& matrices = raw_model_variant ? color_matrices::kRawVariant : color_matrices::kPlain;
    ifd::Add(ifd0, tag::kColorMatrix1, matrices.color_matrix1);
    ifd::Add(ifd0, tag::kColorMatrix2, matrices.color_matrix2);
    ifd::Add(ifd0, tag::kCameraCalibration1, color_matrices::kIdentity);
    ifd::Add(ifd0, tag::kCameraCalibration2, color_matrices::kIdentity);
    ifd::Add(ifd0, tag::kAsShotNeutral, std::array{exif.Mn0322, exif.Mn0323, exif.Mn0324});
    ifd::Add(ifd0, tag::kBaselineNoise, kBaseline);
    ifd::Add(ifd0, tag::kBaselineSharpness, kBaseline);
    ifd::Add(ifd0, tag::kCalibrationIlluminant1, kStandardLightA);
    ifd::Add(ifd0, tag::kCalibrationIlluminant2, kD65);
}

/// Adds the tags for exposure and lens. If `lens` is not null, overwrites the record's focal length. Computes
/// the record's 35 mm focal length if it is 0.
void AddExposureTags(const lensdb::Lensdbtype* lens, EXIFInfo& exif, IFD& exif_ifd) {
    if (lens != nullptr) {
        lens_tags::AddLens(*lens, exif_ifd);
        exif.FocalLength = lens_tags::FocalLength(lens->FocalLength);
    }
    if (exif.FocalLengthIn35mmFilm == 0) {
        exif.FocalLengthIn35mmFilm = lens_tags::FocalLengthIn35mmFilm(exif.FocalLength);
    }
    const std::int32_t estimate =
        lens_tags::EstimatedFNumber(AsSigned(exif.Mn0311).numerator, AsSigned(exif.Mn0312).numerator);
    const auto apertures = lens_tags::PictureApertures(lens, estimate, exif.Mn0313.denominator);

    ifd::Add(exif_ifd, tag::kExposureTime, exif.ExposureTime);
    ifd::Add(exif_ifd, tag::kFNumber, apertures.f_number);
    ifd::Add(exif_ifd, tag::kMaxApertureValue, apertures.max_aperture.value_or(exif.MaxApertureValue));
    ifd::Add(exif_ifd, tag::kFocalLength, exif.FocalLength);
    ifd::Add(exif_ifd, tag::kFocalLengthIn35mmFilm, exif.FocalLengthIn35mmFilm);
}

void AddShootingTags(const EXIFInfo& exif, IFD& exif_ifd) {
    const auto add_undefined = [&exif_ifd](std::uint16_t tag, std::span<const std::uint8_t> value) {
        ifd::AddBytes(exif_ifd, tag, tiff::kUndefined, value);
    };
    const std::array file_source = {static_cast<std::uint8_t>(exif.FileSource)};
    const std::array scene_type = {static_cast<std::uint8_t>(exif.SceneType)};

    ifd::Add(exif_ifd, tag::kExposureProgram, exif.ExposureProgram);
    ifd::Add(exif_ifd, tag::kISOSpeedRatings, exif.ISOSpeedRatings);
    add_undefined(tag::kExifVersion, exif.ExifVersion);
    ifd::Add(exif_ifd, tag::kDateTimeDigitized, exif.DateTimeDigitized);
    ifd::Add(exif_ifd, tag::kShutterSpeedValue, AsSigned(exif.ShutterSpeedValue));
    ifd::Add(exif_ifd, tag::kExposureBiasValue, exif.ExposureBiasValue);
    ifd::Add(exif_ifd, tag::kMeteringMode, exif.MeteringMode);
    ifd::Add(exif_ifd, tag::kLightSource, exif.LightSource);
    ifd::Add(exif_ifd, tag::kFlash, exif.Flash);
    add_undefined(tag::kMakerNote, exif.MakerNote);
    add_undefined(tag::kFileSource, file_source);
    add_undefined(tag::kSceneType, scene_type);
    ifd::Add(exif_ifd, tag::kWhiteBalance, exif.WhiteBalance);
    ifd::Add(exif_ifd, tag::kDigitalZoomRatio, exif.DigitalZoomRatio);
    ifd::Add(exif_ifd, tag::kSceneCaptureType, exif.SceneCaptureType);
    ifd::Add(exif_ifd, tag::kImageUniqueID, exif.ImageUniqueID);
}

}  // namespace

unsigned int DNGlib::createDNGTree(bool preview, bool blackLevelGiven, std::uint16_t blackLevel, bool verbose,
                                   bool rawModelVariant, bool lensFix) {
    using namespace tag_values;
    tree_ = {};
    preview_ = preview;
    verbose_ = verbose;
    EXIFInfo& exif = input_->Exif;

    IFD& raw_ifd = preview_ ? tree_.sub_ifd : tree_.ifd0;
    AddRawImageTags(*input_, preview_ ? kWhiteLevelInSubIFD : kWhiteLevelInIFD0, raw_ifd);
    if (blackLevelGiven) {
        setBlackLevel(&raw_ifd, blackLevel);
    }
    if (preview_) {
        AddPreviewTags(tree_.ifd0);
    }
    AddMainTags(exif, rawModelVariant, tree_.ifd0);
    AddColorTags(exif, rawModelVariant, tree_.ifd0);
    const bool detected = lensFix && exif.LensCode != 0;
    AddExposureTags(detected ? lens_tags::FindLens(*lenses_, exif.LensCodeBits) : nullptr, exif,
                    tree_.exif_ifd);
    AddShootingTags(exif, tree_.exif_ifd);
    return 0;
}
