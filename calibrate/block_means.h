// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_BLOCK_MEANS_H
#define VELMARCON_CALIBRATE_BLOCK_MEANS_H

#include <cstdint>
#include <span>

#include "calibrate/sensor_grid.h"

/// Which rows of a block are taken: in the dark all are alike, in the light every other one has the same
/// colour.
enum class BlockRows { kAll, kEven, kOdd };

/// What one exposure shows.
struct BlockMeans {
    sensor_grid::Grid means;            ///< of each block, in raw units
    std::vector<std::uint16_t> spread;  ///< of each patch: between its second and its eighth value of nine
};

/// The mean of each block, in which a pixel counts as no further than `reach` from the median of nine pixels
/// of its patch (one step of Huber's M-estimator). `pixels` is a whole frame. Takes one pass; `result` keeps
/// its memory.
void MeasureBlocks(std::span<const std::uint16_t> pixels, BlockRows rows, int reach, BlockMeans& result);

/// Standard deviations of the pixels of an exposure, in raw units.
struct PixelNoise {
    float pixel = 0;      ///< of what each pixel has for itself
    float with_rows = 0;  ///< with what the pixels of a row share
};

/// Measures them in differences between pixels of one colour, by their MAD: so neither the levels of columns
/// nor defects nor shading count.
PixelNoise MeasureNoise(std::span<const std::uint16_t> pixels);

#endif  // VELMARCON_CALIBRATE_BLOCK_MEANS_H
