// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_BLOCK_MEANS_H
#define VELMARCON_CALIBRATE_BLOCK_MEANS_H

#include <cstdint>
#include <span>

#include "base/pixel.h"
#include "calibrate/sensor_grid.h"
#include "sensor/instruction_set.h"

/// Which rows of a block to measure: in the dark all rows are alike, in the light every other row has the
/// same colour.
enum class BlockRows { kAll, kEven, kOdd };

/// The measurements of one exposure.
struct BlockMeans {
    sensor_grid::Grid means;  ///< mean of each block, in raw units
    /// Spread of each patch: the difference of the second and the eighth of nine sorted values.
    std::vector<std::uint16_t> spread;
};

/// Measures the mean of each block. A pixel further than `reach` from the median of nine pixels of its patch
/// counts as at that distance (one step of Huber's M-estimator). `pixels` is a whole frame. Takes one pass;
/// `result` reuses its memory.
void MeasureBlocks(std::span<const Pixel> pixels, BlockRows rows, int reach, BlockMeans& result,
                   InstructionSet version = instruction_set::Best());

/// Standard deviations of the pixels of an exposure, in raw units.
struct PixelNoise {
    float pixel = 0;      ///< noise that is independent from pixel to pixel
    float with_rows = 0;  ///< this plus the noise that the pixels of a row share
};

/// Measures the noise as the MAD of differences between pixels of one colour, so that levels of columns,
/// defects and shading have no effect.
PixelNoise MeasureNoise(std::span<const Pixel> pixels);

#endif  // VELMARCON_CALIBRATE_BLOCK_MEANS_H
