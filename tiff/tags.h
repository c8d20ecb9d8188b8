// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TIFF_TAGS_H
#define VELMARCON_TIFF_TAGS_H

#include <cstdint>

/// Tag numbers of the baseline IFD (TIFF 6.0, TIFF/EP), of the EXIF IFD (Exif 2.3) and of DNG 1.4.
namespace tag {

// TIFF 6.0
constexpr std::uint16_t kNewSubFileType = 254;
constexpr std::uint16_t kImageWidth = 256;
constexpr std::uint16_t kImageLength = 257;
constexpr std::uint16_t kBitsPerSample = 258;
constexpr std::uint16_t kCompression = 259;
constexpr std::uint16_t kPhotometricInterpretation = 262;
constexpr std::uint16_t kImageDescription = 270;
constexpr std::uint16_t kMake = 271;
constexpr std::uint16_t kModel = 272;
constexpr std::uint16_t kStripOffsets = 273;
constexpr std::uint16_t kOrientation = 274;
constexpr std::uint16_t kSamplesPerPixel = 277;
constexpr std::uint16_t kRowsPerStrip = 278;
constexpr std::uint16_t kStripByteCounts = 279;
constexpr std::uint16_t kXResolution = 282;
constexpr std::uint16_t kYResolution = 283;
constexpr std::uint16_t kPlanarConfiguration = 284;
constexpr std::uint16_t kResolutionUnit = 296;
constexpr std::uint16_t kSoftware = 305;
constexpr std::uint16_t kDateTime = 306;
constexpr std::uint16_t kArtist = 315;
constexpr std::uint16_t kHostComputer = 316;
constexpr std::uint16_t kSubIFDs = 330;
constexpr std::uint16_t kCopyright = 33432;
constexpr std::uint16_t kExifIFD = 34665;

// TIFF/EP (ISO 12234-2); the camera writes these into IFD0
constexpr std::uint16_t kCFARepeatPatternDim = 33421;
constexpr std::uint16_t kCFAPattern = 33422;
constexpr std::uint16_t kSelfTimerMode = 34859;
constexpr std::uint16_t kFocalPlaneXResolution = 37390;
constexpr std::uint16_t kFocalPlaneYResolution = 37391;
constexpr std::uint16_t kFocalPlaneResolutionUnit = 37392;
constexpr std::uint16_t kTIFFEPStandardID = 37398;

// Exif 2.3
constexpr std::uint16_t kExposureTime = 33434;
constexpr std::uint16_t kFNumber = 33437;
constexpr std::uint16_t kExposureProgram = 34850;
constexpr std::uint16_t kGPSIFD = 34853;
constexpr std::uint16_t kISOSpeedRatings = 34855;
constexpr std::uint16_t kExifVersion = 36864;
constexpr std::uint16_t kDateTimeOriginal = 36867;
constexpr std::uint16_t kDateTimeDigitized = 36868;
constexpr std::uint16_t kShutterSpeedValue = 37377;
constexpr std::uint16_t kExposureBiasValue = 37380;
constexpr std::uint16_t kMaxApertureValue = 37381;
constexpr std::uint16_t kSubjectDistance = 37382;
constexpr std::uint16_t kMeteringMode = 37383;
constexpr std::uint16_t kLightSource = 37384;
constexpr std::uint16_t kFlash = 37385;
constexpr std::uint16_t kFocalLength = 37386;
constexpr std::uint16_t kMakerNote = 37500;
constexpr std::uint16_t kSubSecTimeOriginal = 37521;
constexpr std::uint16_t kPixelXDimension = 40962;
constexpr std::uint16_t kPixelYDimension = 40963;
constexpr std::uint16_t kInteroperabilityIFD = 40965;
constexpr std::uint16_t kFileSource = 41728;
constexpr std::uint16_t kSceneType = 41729;
constexpr std::uint16_t kWhiteBalance = 41987;
constexpr std::uint16_t kDigitalZoomRatio = 41988;
constexpr std::uint16_t kFocalLengthIn35mmFilm = 41989;
constexpr std::uint16_t kSceneCaptureType = 41990;
constexpr std::uint16_t kImageUniqueID = 42016;
constexpr std::uint16_t kLensMake = 42035;
constexpr std::uint16_t kLensModel = 42036;
constexpr std::uint16_t kLensSerialNumber = 42037;

// DNG 1.4, chapter "DNG Tags"
constexpr std::uint16_t kDNGVersion = 50706;
constexpr std::uint16_t kUniqueCameraModel = 50708;
constexpr std::uint16_t kLinearizationTable = 50712;
constexpr std::uint16_t kBlackLevelRepeatDim = 50713;
constexpr std::uint16_t kBlackLevel = 50714;
constexpr std::uint16_t kWhiteLevel = 50717;
constexpr std::uint16_t kDefaultCropOrigin = 50719;
constexpr std::uint16_t kDefaultCropSize = 50720;
constexpr std::uint16_t kColorMatrix1 = 50721;
constexpr std::uint16_t kColorMatrix2 = 50722;
constexpr std::uint16_t kCameraCalibration1 = 50723;
constexpr std::uint16_t kCameraCalibration2 = 50724;
constexpr std::uint16_t kAsShotNeutral = 50728;
constexpr std::uint16_t kBaselineNoise = 50731;
constexpr std::uint16_t kBaselineSharpness = 50732;
constexpr std::uint16_t kBayerGreenSplit = 50733;
constexpr std::uint16_t kCameraSerialNumber = 50735;
constexpr std::uint16_t kAntiAliasStrength = 50738;
constexpr std::uint16_t kMakerNoteSafety = 50741;
constexpr std::uint16_t kCalibrationIlluminant1 = 50778;
constexpr std::uint16_t kCalibrationIlluminant2 = 50779;

}  // namespace tag

#endif  // VELMARCON_TIFF_TAGS_H
