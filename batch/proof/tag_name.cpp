// SPDX-License-Identifier: MIT
#include "batch/proof/tag_name.h"

#include <algorithm>
#include <array>
#include <utility>

#include "tiff/tags.h"

namespace {

/// In ascending order.
constexpr std::array<std::pair<std::uint16_t, const char*>, 78> kNames = {{
    {tag::kNewSubFileType, "NewSubFileType"},
    {tag::kImageWidth, "ImageWidth"},
    {tag::kImageLength, "ImageLength"},
    {tag::kBitsPerSample, "BitsPerSample"},
    {tag::kCompression, "Compression"},
    {tag::kPhotometricInterpretation, "PhotometricInterpretation"},
    {tag::kMake, "Make"},
    {tag::kModel, "Model"},
    {tag::kStripOffsets, "StripOffsets"},
    {tag::kOrientation, "Orientation"},
    {tag::kSamplesPerPixel, "SamplesPerPixel"},
    {tag::kRowsPerStrip, "RowsPerStrip"},
    {tag::kStripByteCounts, "StripByteCounts"},
    {tag::kXResolution, "XResolution"},
    {tag::kYResolution, "YResolution"},
    {tag::kPlanarConfiguration, "PlanarConfiguration"},
    {tag::kResolutionUnit, "ResolutionUnit"},
    {tag::kSoftware, "Software"},
    {tag::kArtist, "Artist"},
    {tag::kHostComputer, "HostComputer"},
    {tag::kSubIFDs, "SubIFDs"},
    {tag::kCFARepeatPatternDim, "CFARepeatPatternDim"},
    {tag::kCFAPattern, "CFAPattern"},
    {tag::kCopyright, "Copyright"},
    {tag::kExposureTime, "ExposureTime"},
    {tag::kFNumber, "FNumber"},
    {tag::kExifIFD, "ExifIFD"},
    {tag::kExposureProgram, "ExposureProgram"},
    {tag::kGPSIFD, "GPSIFD"},
    {tag::kISOSpeedRatings, "ISOSpeedRatings"},
    {tag::kSelfTimerMode, "SelfTimerMode"},
    {tag::kExifVersion, "ExifVersion"},
    {tag::kDateTimeOriginal, "DateTimeOriginal"},
    {tag::kDateTimeDigitized, "DateTimeDigitized"},
    {tag::kShutterSpeedValue, "ShutterSpeedValue"},
    {tag::kExposureBiasValue, "ExposureBiasValue"},
    {tag::kMaxApertureValue, "MaxApertureValue"},
    {tag::kMeteringMode, "MeteringMode"},
    {tag::kLightSource, "LightSource"},
    {tag::kFlash, "Flash"},
    {tag::kFocalLength, "FocalLength"},
    {tag::kFocalPlaneXResolution, "FocalPlaneXResolution"},
    {tag::kFocalPlaneYResolution, "FocalPlaneYResolution"},
    {tag::kFocalPlaneResolutionUnit, "FocalPlaneResolutionUnit"},
    {tag::kTIFFEPStandardID, "TIFF/EPStandardID"},
    {tag::kMakerNote, "MakerNote"},
    {tag::kInteroperabilityIFD, "InteroperabilityIFD"},
    {tag::kFileSource, "FileSource"},
    {tag::kSceneType, "SceneType"},
    {tag::kWhiteBalance, "WhiteBalance"},
    {tag::kDigitalZoomRatio, "DigitalZoomRatio"},
    {tag::kFocalLengthIn35mmFilm, "FocalLengthIn35mmFilm"},
    {tag::kSceneCaptureType, "SceneCaptureType"},
    {tag::kImageUniqueID, "ImageUniqueID"},
    {tag::kLensMake, "LensMake"},
    {tag::kLensModel, "LensModel"},
    {tag::kLensSerialNumber, "LensSerialNumber"},
    {tag::kDNGVersion, "DNGVersion"},
    {tag::kUniqueCameraModel, "UniqueCameraModel"},
    {tag::kLinearizationTable, "LinearizationTable"},
    {tag::kBlackLevelRepeatDim, "BlackLevelRepeatDim"},
    {tag::kBlackLevel, "BlackLevel"},
    {tag::kWhiteLevel, "WhiteLevel"},
    {tag::kDefaultCropOrigin, "DefaultCropOrigin"},
    {tag::kDefaultCropSize, "DefaultCropSize"},
    {tag::kColorMatrix1, "ColorMatrix1"},
    {tag::kColorMatrix2, "ColorMatrix2"},
    {tag::kCameraCalibration1, "CameraCalibration1"},
    {tag::kCameraCalibration2, "CameraCalibration2"},
    {tag::kAsShotNeutral, "AsShotNeutral"},
    {tag::kBaselineNoise, "BaselineNoise"},
    {tag::kBaselineSharpness, "BaselineSharpness"},
    {tag::kBayerGreenSplit, "BayerGreenSplit"},
    {tag::kCameraSerialNumber, "CameraSerialNumber"},
    {tag::kAntiAliasStrength, "AntiAliasStrength"},
    {tag::kMakerNoteSafety, "MakerNoteSafety"},
    {tag::kCalibrationIlluminant1, "CalibrationIlluminant1"},
    {tag::kCalibrationIlluminant2, "CalibrationIlluminant2"},
}};

}  // namespace

std::string TagName(std::uint16_t tag) {
    const auto* const name =
        std::ranges::lower_bound(kNames, tag, {}, &std::pair<std::uint16_t, const char*>::first);
    return name != kNames.end() && name->first == tag ? name->second : std::to_string(tag);
}
