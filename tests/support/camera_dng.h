// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_CAMERA_DNG_H
#define VELMARCON_TESTS_SUPPORT_CAMERA_DNG_H

#include <cstdint>
#include <vector>

#include "samples/camera_dng.h"
#include "samples/shot.h"

namespace support {

/// The byte of pixel (x, y). Every value occurs, and neighbouring pixels differ.
std::uint8_t CameraByte(int x, int y);

/// The entry of the camera's linearization table for a byte b: b * b / 4, rounded down.
std::uint16_t CameraLevel(std::uint8_t byte);

/// The raw image of a file that was repaired without corrections: the CameraLevel of each CameraByte.
std::vector<std::uint16_t> CameraLevels(int width, int height);

/// Replaces column `column` of an image, from `first_row` to the last row, by interpolating its neighbours of
/// the same colour. The column must be at least two from the edges, and `first_row` must not be 0.
void InterpolateColumn(std::vector<std::uint16_t>& pixels, int width, int column, int first_row);

/// A preview of 230400 bytes in which neighbouring bytes differ.
std::vector<std::uint8_t> CameraPreview();

/// A camera DNG whose raw image is `width` x `height` bytes, all in one strip.
samples::CameraDngFile SmallCameraDng(int width, int height, const samples::Shot& shot = {});

/// A camera DNG of full size, samples::kCameraDngBytes, with the camera's own strips.
samples::CameraDngFile FullCameraDng(const samples::Shot& shot = {});

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_CAMERA_DNG_H
