// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_ROW_OFFSETS_H
#define VELMARCON_SENSOR_ROW_OFFSETS_H

#include <span>
#include <vector>

#include "base/pixel.h"

/// The amounts to subtract from each row of an image, in the left and in the right half of the sensor, in raw
/// units.
struct RowOffsets {
    std::vector<float> left;   ///< by row
    std::vector<float> right;  ///< by row
};

/// Estimates the offsets of an image of `width` columns and `height` rows from its dark pixels; their mean is
/// 0. An image without dark pixels can give offsets that are infinite or NaN.
RowOffsets EstimateRowOffsets(std::span<const Pixel> pixels, int width, int height);

#endif  // VELMARCON_SENSOR_ROW_OFFSETS_H
