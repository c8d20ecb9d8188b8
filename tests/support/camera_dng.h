// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_CAMERA_DNG_H
#define VELMARCON_TESTS_SUPPORT_CAMERA_DNG_H

#include <cstdint>
#include <vector>

#include "samples/camera_dng.h"
#include "samples/shot.h"

namespace support {

/// The byte for pixel (x, y): every value occurs, and neighbours differ.
std::uint8_t CameraByte(int x, int y);

/// What the camera's linearization table makes of a byte b: b * b / 4, rounded down.
std::uint16_t CameraLevel(std::uint8_t byte);

/// The raw image of a repaired file to which nothing was done: the CameraLevel of each CameraByte.
std::vector<std::uint16_t> CameraLevels(int width, int height);

/// Replaces column `column` of an image, at least two columns from its edges, from `first_row` (not 0) to the
/// last row by what its neighbours of the same colour give.
void InterpolateColumn(std::vector<std::uint16_t>& pixels, int width, int column, int first_row);

/// 230400 bytes of a preview; neighbours differ.
std::vector<std::uint8_t> CameraPreview();

/// A DNG of the camera whose raw image is `width` x `height` bytes, all in one strip.
samples::CameraDngFile SmallCameraDng(int width, int height, const samples::Shot& shot = {});

/// The same at full size, in the camera's own strips: samples::kCameraDngBytes.
samples::CameraDngFile FullCameraDng(const samples::Shot& shot = {});

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_CAMERA_DNG_H
