// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_DNG_TAGS_H
#define VELMARCON_DNG_DNG_TAGS_H

#include <cstdint>

/// Tag numbers that DNG adds to TIFF (DNG 1.4, chapter "DNG Tags").
namespace tag {

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

#endif  // VELMARCON_DNG_DNG_TAGS_H
