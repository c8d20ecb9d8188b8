// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_TAG_VALUES_H
#define VELMARCON_DNG_TAG_VALUES_H

#include <array>

/// Values that every written DNG carries, named after what they mean in TIFF 6.0, TIFF/EP and DNG 1.4.
namespace tag_values {

constexpr unsigned int kFullImage = 0;     ///< NewSubFileType
constexpr unsigned int kReducedImage = 1;  ///< NewSubFileType

constexpr unsigned short kUncompressed = 1;                  ///< Compression
constexpr unsigned short kInterleaved = 1;                   ///< PlanarConfiguration
constexpr unsigned short kInch = 2;                          ///< ResolutionUnit, FocalPlaneResolutionUnit
constexpr unsigned short kRgb = 2;                           ///< PhotometricInterpretation
constexpr unsigned short kColorFilterArray = 32803;          ///< PhotometricInterpretation
constexpr std::array<unsigned short, 2> kTwoByTwo = {2, 2};  ///< CFARepeatPatternDim
constexpr std::array<unsigned char, 4> kRedGreenGreenBlue = {0, 1, 1, 2};  ///< CFAPattern

constexpr unsigned int kRawResolution = 300;           ///< pixels per inch
constexpr unsigned int kPreviewResolution = 72;        ///< pixels per inch
constexpr unsigned int kFocalPlaneXResolution = 3729;  ///< pixels per inch
constexpr unsigned int kFocalPlaneYResolution = 3764;  ///< pixels per inch

/// Rows and columns at each edge that a raw developer crops (DefaultCropOrigin).
constexpr unsigned short kCropMargin = 2;

/// WhiteLevel differs by one between the two places of the raw image, on purpose: files made so far carry it.
constexpr unsigned int kWhiteLevelInIFD0 = 16383;
constexpr unsigned int kWhiteLevelInSubIFD = 16384;

constexpr unsigned int kBayerGreenSplit = 500;
constexpr unsigned short kSafe = 1;             ///< MakerNoteSafety
constexpr unsigned short kNoSelfTimer = 0;      ///< SelfTimerMode
constexpr unsigned short kStandardLightA = 17;  ///< CalibrationIlluminant1
constexpr unsigned short kD65 = 21;             ///< CalibrationIlluminant2
constexpr std::array<unsigned char, 4> kDngVersion = {1, 4, 0, 0};
/// 1.0.0.0 laid down in the order of a little-endian LONG, as the camera writes it.
constexpr std::array<unsigned char, 4> kTiffEpStandard = {0, 0, 0, 1};

constexpr unsigned int kPlaceholder = 0;  ///< of an offset that the layout fills in

}  // namespace tag_values

#endif  // VELMARCON_DNG_TAG_VALUES_H
