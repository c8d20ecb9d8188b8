// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_SENSOR_FRAME_H
#define VELMARCON_SENSOR_SENSOR_FRAME_H

#include "base/pixel.h"

/// The two sizes of sensor images, in pixels.
namespace sensor_frame {

constexpr int kFullWidth = 3968;     ///< of a RAW file and of the sensor database
constexpr int kCroppedWidth = 3920;  ///< of a DNG that the camera wrote

// Position of the cropped frame in the full one. Dark levels and defect lists differ by one column on
// purpose: the databases in use were made with these values.
constexpr int kCroppedLevelColumn = 23;   ///< full-frame column of the first pixel, for dark levels
constexpr int kCroppedDefectColumn = 24;  ///< full-frame column of the first pixel, for defect lists
constexpr int kCroppedDefectRow = 6;  ///< full-frame row of the first pixel, for the first row of a defect

constexpr Pixel kWhite = 16383;  ///< the largest 14-bit value

}  // namespace sensor_frame

#endif  // VELMARCON_SENSOR_SENSOR_FRAME_H
