// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_SENSOR_FRAME_H
#define VELMARCON_SENSOR_SENSOR_FRAME_H

/// The two frames in which sensor data come, in pixels.
namespace sensor_frame {

constexpr int kFullWidth = 3968;     ///< of a RAW file, and of the sensor database
constexpr int kCroppedWidth = 3920;  ///< of a DNG that the camera wrote

// Where the cropped frame lies in the full one. Column levels and defect lists differ by one column, on
// purpose: the databases in use have been made with these values.
constexpr int kCroppedLevelColumn = 23;   ///< of the first pixel, for dark levels
constexpr int kCroppedDefectColumn = 24;  ///< of the first pixel, for defect lists
constexpr int kCroppedDefectRow = 6;      ///< of the first row, for the first row of a defect

constexpr unsigned short kWhite = 16383;  ///< the largest 14-bit value

}  // namespace sensor_frame

#endif  // VELMARCON_SENSOR_SENSOR_FRAME_H
