// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_TAG_VALUES_H
#define VELMARCON_DNG_TAG_VALUES_H

#include <array>
#include <cstdint>

#include "tiff/rational.h"

/// The values that are the same in every written DNG, named after their meaning in TIFF 6.0, TIFF/EP and DNG
/// 1.4.
namespace tag_values {

constexpr std::uint16_t kRawBitsPerSample = 16;

constexpr std::uint32_t kFullImage = 0;     ///< NewSubFileType
constexpr std::uint32_t kReducedImage = 1;  ///< NewSubFileType

constexpr std::uint16_t kUncompressed = 1;                  ///< Compression
constexpr std::uint16_t kInterleaved = 1;                   ///< PlanarConfiguration
constexpr std::uint16_t kInch = 2;                          ///< ResolutionUnit, FocalPlaneResolutionUnit
constexpr std::uint16_t kRgb = 2;                           ///< PhotometricInterpretation
constexpr std::uint16_t kColorFilterArray = 32803;          ///< PhotometricInterpretation
constexpr std::array<std::uint16_t, 2> kTwoByTwo = {2, 2};  ///< CFARepeatPatternDim
constexpr std::array<std::uint8_t, 4> kRedGreenGreenBlue = {0, 1, 1, 2};  ///< CFAPattern

constexpr Rational kRawResolution = {300, 1};           ///< pixels per inch
constexpr Rational kPreviewResolution = {72, 1};        ///< pixels per inch
constexpr Rational kFocalPlaneXResolution = {3729, 1};  ///< pixels per inch
constexpr Rational kFocalPlaneYResolution = {3764, 1};  ///< pixels per inch

/// Rows and columns at each edge that a raw developer crops (DefaultCropOrigin).
constexpr std::uint16_t kCropMargin = 2;

/// WhiteLevel deliberately depends on the IFD of the raw image: files made so far contain these values.
constexpr std::uint32_t kWhiteLevelInIFD0 = 16383;
constexpr std::uint32_t kWhiteLevelInSubIFD = 16384;

constexpr std::uint32_t kBayerGreenSplit = 500;
constexpr Rational kNoAntiAliasing = {0, 1};  ///< AntiAliasStrength
constexpr Rational kBaseline = {1, 1};     ///< BaselineNoise, BaselineSharpness: same as the reference camera
constexpr std::uint16_t kSafe = 1;         ///< MakerNoteSafety
constexpr std::uint16_t kNoSelfTimer = 0;  ///< SelfTimerMode
constexpr std::uint16_t kStandardLightA = 17;  ///< CalibrationIlluminant1
constexpr std::uint16_t kD65 = 21;             ///< CalibrationIlluminant2
constexpr std::array<std::uint8_t, 4> kDngVersion = {1, 4, 0, 0};
/// 1.0.0.0 in the byte order of a little-endian LONG, as the camera writes it.
constexpr std::array<std::uint8_t, 4> kTiffEpStandard = {0, 0, 0, 1};

constexpr std::uint32_t kPlaceholder = 0;  ///< for an offset that the layout fills in

}  // namespace tag_values

#endif  // VELMARCON_DNG_TAG_VALUES_H
