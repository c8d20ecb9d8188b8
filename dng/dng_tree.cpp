// SPDX-License-Identifier: MIT
// The tag tree of a converted pair: which tags a written DNG holds and where their values come from.
#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "dng/color_matrices.h"
#include "dng/dnglib.h"
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

}  // namespace

unsigned int DNGlib::createDNGTree(bool preview, bool blackLevelGiven, unsigned short blackLevel,
                                   bool verbose, bool rawModelVariant, bool lensFix) {
    ifd0_.clear();
    sub_ifd_.clear();
    exif_ifd_.clear();
    preview_ = preview;
    verbose_ = verbose;

    IFD& raw_ifd = preview_ ? sub_ifd_ : ifd0_;
    AddRawImageTags(raw_ifd);
    if (blackLevelGiven) {
        setBlackLevel(&raw_ifd, blackLevel);
    }
    if (preview_) {
        AddPreviewTags();
    }
    AddMainTags(rawModelVariant);
    AddColorTags(rawModelVariant);
    AddExposureTags(lensFix);
    AddShootingTags();
    return 0;
}

void DNGlib::AddRawImageTags(IFD& ifd) {
    using namespace tag_values;
    const auto width = static_cast<std::uint32_t>(input_->Width);
    const auto height = static_cast<std::uint32_t>(input_->Height);
    const std::array crop_size = {static_cast<unsigned short>(width - 2 * kCropMargin),
                                  static_cast<unsigned short>(height - 2 * kCropMargin)};
    constexpr std::array crop_origin = {kCropMargin, kCropMargin};
    constexpr unsigned short bits_per_sample = 16;
    constexpr unsigned short samples_per_pixel = 1;

    AddIFDTag(&ifd, tag::kNewSubFileType, kFullImage);
    AddIFDTag(&ifd, tag::kImageWidth, width);
    AddIFDTag(&ifd, tag::kImageLength, height);
    AddIFDTag(&ifd, tag::kBitsPerSample, bits_per_sample);
    AddIFDTag(&ifd, tag::kPhotometricInterpretation, kColorFilterArray);
    AddIFDTag(&ifd, tag::kSamplesPerPixel, samples_per_pixel);
    AddIFDTag(&ifd, tag::kRowsPerStrip, height);
    AddIFDTag(&ifd, tag::kStripByteCounts, static_cast<unsigned int>(sizeof(std::uint16_t)) * width * height);
    AddIFDTag(&ifd, tag::kXResolution, kRawResolution, 1U);
    AddIFDTag(&ifd, tag::kYResolution, kRawResolution, 1U);
    AddIFDTag(&ifd, tag::kCFARepeatPatternDim, kTwoByTwo.data(), kTwoByTwo.size());
    AddIFDTag(&ifd, tag::kCFAPattern, kRedGreenGreenBlue.data(), kRedGreenGreenBlue.size());
    AddIFDTag(&ifd, tag::kWhiteLevel, preview_ ? kWhiteLevelInSubIFD : kWhiteLevelInIFD0);
    AddIFDTag(&ifd, tag::kDefaultCropOrigin, crop_origin.data(), crop_origin.size());
    AddIFDTag(&ifd, tag::kDefaultCropSize, crop_size.data(), crop_size.size());
    AddIFDTag(&ifd, tag::kBayerGreenSplit, kBayerGreenSplit);
    AddIFDTag(&ifd, tag::kAntiAliasStrength, 0U, 1U);
    AddStripTags(ifd);
}

/// What makes an IFD a complete image, whichever image it holds.
void DNGlib::AddStripTags(IFD& ifd) {
    using namespace tag_values;
    AddIFDTag(&ifd, tag::kCompression, kUncompressed);
    AddIFDTag(&ifd, tag::kStripOffsets, kPlaceholder);
    AddIFDTag(&ifd, tag::kPlanarConfiguration, kInterleaved);
    AddIFDTag(&ifd, tag::kResolutionUnit, kInch);
}

void DNGlib::AddPreviewTags() {
    using namespace tag_values;
    constexpr std::array<unsigned short, 3> bits_per_sample = {8, 8, 8};

    AddIFDTag(&ifd0_, tag::kNewSubFileType, kReducedImage);
    AddIFDTag(&ifd0_, tag::kImageWidth, static_cast<unsigned int>(PreviewSampler::kWidth));
    AddIFDTag(&ifd0_, tag::kImageLength, static_cast<unsigned int>(PreviewSampler::kHeight));
    AddIFDTag(&ifd0_, tag::kBitsPerSample, bits_per_sample.data(), bits_per_sample.size());
    AddIFDTag(&ifd0_, tag::kPhotometricInterpretation, kRgb);
    AddIFDTag(&ifd0_, tag::kSamplesPerPixel, static_cast<unsigned short>(bits_per_sample.size()));
    AddIFDTag(&ifd0_, tag::kRowsPerStrip, static_cast<unsigned int>(PreviewSampler::kHeight));
    AddIFDTag(&ifd0_, tag::kStripByteCounts, static_cast<unsigned int>(PreviewSampler::kSize));
    AddIFDTag(&ifd0_, tag::kXResolution, kPreviewResolution, 1U);
    AddIFDTag(&ifd0_, tag::kYResolution, kPreviewResolution, 1U);
    AddIFDTag(&ifd0_, tag::kSubIFDs, kPlaceholder);
    AddStripTags(ifd0_);
}

void DNGlib::AddMainTags(bool rawModelVariant) {
    using namespace tag_values;
    const EXIFInfo& exif = input_->Exif;

    AddIFDTag(&ifd0_, tag::kMake, exif.Make);
    AddIFDTag(&ifd0_, tag::kModel, std::string(rawModelVariant ? kRawVariantModel : kModel));
    AddIFDTag(&ifd0_, tag::kOrientation, exif.Orientation);
    AddIFDTag(&ifd0_, tag::kSoftware, exif.Software);
    AddIFDTag(&ifd0_, tag::kArtist, std::string());
    AddIFDTag(&ifd0_, tag::kCopyright, std::string());
    AddIFDTag(&ifd0_, tag::kExifIFD, kPlaceholder);
    AddIFDTag(&ifd0_, tag::kSelfTimerMode, kNoSelfTimer);
    AddIFDTag(&ifd0_, tag::kDateTimeOriginal, exif.DateTimeOriginal);
    AddIFDTag(&ifd0_, tag::kFocalPlaneXResolution, kFocalPlaneXResolution, 1U);
    AddIFDTag(&ifd0_, tag::kFocalPlaneYResolution, kFocalPlaneYResolution, 1U);
    AddIFDTag(&ifd0_, tag::kFocalPlaneResolutionUnit, kInch);
    AddIFDTag(&ifd0_, tag::kTIFFEPStandardID, kTiffEpStandard.data(), kTiffEpStandard.size());
    AddIFDTag(&ifd0_, tag::kDNGVersion, kDngVersion.data(), kDngVersion.size());
    AddIFDTag(&ifd0_, tag::kUniqueCameraModel, exif.Model);
    AddIFDTag(&ifd0_, tag::kCameraSerialNumber,
              std::to_string(std::bit_cast<std::int32_t>(exif.SerialNumber)));
    AddIFDTag(&ifd0_, tag::kMakerNoteSafety, kSafe);
}

void DNGlib::AddColorTags(bool rawModelVariant) {
    using color_matrices::Matrix;
    const EXIFInfo& exif = input_->Exif;
    const auto add_matrix = [this](unsigned short tag, const Matrix& matrix) {
        AddIFDTag(&ifd0_, tag, matrix.numerators.data(), matrix.denominators.data(),
                  color_matrices::kElements);
    };
    const auto& matrices = rawModelVariant ? color_matrices::kRawVariant : color_matrices::kPlain;
    add_matrix(tag::kColorMatrix1, matrices.color_matrix1);
    add_matrix(tag::kColorMatrix2, matrices.color_matrix2);
    add_matrix(tag::kCameraCalibration1, color_matrices::kIdentity);
    add_matrix(tag::kCameraCalibration2, color_matrices::kIdentity);

    const std::array neutral = {exif.Mn0322.numerator, exif.Mn0323.numerator, exif.Mn0324.numerator};
    const std::array over = {exif.Mn0322.denominator, exif.Mn0323.denominator, exif.Mn0324.denominator};
    AddIFDTag(&ifd0_, tag::kAsShotNeutral, neutral.data(), over.data(), neutral.size());

    AddIFDTag(&ifd0_, tag::kBaselineNoise, 1U, 1U);
    AddIFDTag(&ifd0_, tag::kBaselineSharpness, 1U, 1U);
    AddIFDTag(&ifd0_, tag::kCalibrationIlluminant1, tag_values::kStandardLightA);
    AddIFDTag(&ifd0_, tag::kCalibrationIlluminant2, tag_values::kD65);
}

void DNGlib::AddExposureTags(bool lensFix) {
    EXIFInfo& exif = input_->Exif;
    const bool detected = lensFix && exif.LensCode != 0;
    const auto* lens = detected ? lens_tags::FindLens(*lenses_, exif.LensCodeBits) : nullptr;
    if (lens != nullptr) {
        AddLensTags(*lens);
        exif.FocalLength = lens_tags::FocalLength(lens->FocalLength);
    }
    if (exif.FocalLengthIn35mmFilm == 0) {
        exif.FocalLengthIn35mmFilm = lens_tags::FocalLengthIn35mmFilm(exif.FocalLength);
    }
    const std::int32_t estimate =
        lens_tags::EstimatedFNumber(AsSigned(exif.Mn0311).numerator, AsSigned(exif.Mn0312).numerator);
    const auto apertures = lens_tags::PictureApertures(lens, estimate, exif.Mn0313.denominator);

    AddRational(exif_ifd_, tag::kExposureTime, exif.ExposureTime);
    AddRational(exif_ifd_, tag::kFNumber, apertures.f_number);
    AddRational(exif_ifd_, tag::kMaxApertureValue, apertures.max_aperture.value_or(exif.MaxApertureValue));
    AddRational(exif_ifd_, tag::kFocalLength, exif.FocalLength);
    AddIFDTag(&exif_ifd_, tag::kFocalLengthIn35mmFilm, exif.FocalLengthIn35mmFilm);
}

void DNGlib::AddLensTags(const lensdb::Lensdbtype& lens) {
    AddIFDTag(&exif_ifd_, tag::kLensMake, lens.Maker);
    AddIFDTag(&exif_ifd_, tag::kLensModel, lens.Model);
    if (!lens.SerialNo.empty()) {
        AddIFDTag(&exif_ifd_, tag::kLensSerialNumber, lens.SerialNo);
    }
}

void DNGlib::AddShootingTags() {
    const EXIFInfo& exif = input_->Exif;
    const auto add_undefined = [this](unsigned short tag, const std::vector<std::uint8_t>& value) {
        AddIFDTag(&exif_ifd_, tag, value.data(), tiff::kUndefined, static_cast<unsigned int>(value.size()));
    };
    const SRational shutter_speed = AsSigned(exif.ShutterSpeedValue);

    AddIFDTag(&exif_ifd_, tag::kExposureProgram, exif.ExposureProgram);
    AddIFDTag(&exif_ifd_, tag::kISOSpeedRatings, exif.ISOSpeedRatings);
    add_undefined(tag::kExifVersion, exif.ExifVersion);
    AddIFDTag(&exif_ifd_, tag::kDateTimeDigitized, exif.DateTimeDigitized);
    AddIFDTag(&exif_ifd_, tag::kShutterSpeedValue, shutter_speed.numerator, shutter_speed.denominator);
    AddIFDTag(&exif_ifd_, tag::kExposureBiasValue, exif.ExposureBiasValue.numerator,
              exif.ExposureBiasValue.denominator);
    AddIFDTag(&exif_ifd_, tag::kMeteringMode, exif.MeteringMode);
    AddIFDTag(&exif_ifd_, tag::kLightSource, exif.LightSource);
    AddIFDTag(&exif_ifd_, tag::kFlash, exif.Flash);
    add_undefined(tag::kMakerNote, exif.MakerNote);
    AddIFDTag(&exif_ifd_, tag::kFileSource, static_cast<unsigned char>(exif.FileSource), tiff::kUndefined);
    AddIFDTag(&exif_ifd_, tag::kSceneType, static_cast<unsigned char>(exif.SceneType), tiff::kUndefined);
    AddIFDTag(&exif_ifd_, tag::kWhiteBalance, exif.WhiteBalance);
    AddRational(exif_ifd_, tag::kDigitalZoomRatio, exif.DigitalZoomRatio);
    AddIFDTag(&exif_ifd_, tag::kSceneCaptureType, exif.SceneCaptureType);
    AddIFDTag(&exif_ifd_, tag::kImageUniqueID, exif.ImageUniqueID);
}

void DNGlib::AddRational(IFD& ifd, unsigned short tag, Rational value) {
    AddIFDTag(&ifd, tag, value.numerator, value.denominator);
}
