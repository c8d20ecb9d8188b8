// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_FLAT_STACK_H
#define VELMARCON_CALIBRATE_FLAT_STACK_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "calibrate/block_means.h"
#include "calibrate/sensor_grid.h"

/// A stack of flat exposures: how each block responds to light, relative to the average of its row of blocks,
/// separately for each colour. Memory does not grow with the number of exposures.
class FlatStack {
  public:
    /// Adds an exposure, given the blocks of its even and of its odd rows and the dark level of each column
    /// at its ISO speed. Returns why the exposure was left out, empty if it was not: its light must be even,
    /// and between 10 and 70 % of the range.
    [[nodiscard]] std::string Add(const BlockMeans& even, const BlockMeans& odd, std::span<const float> dark);

    int count() const { return count_; }

    /// The responses averaged over all exposures, weighted by their light.
    sensor_grid::Grid Combined() const;

    /// For each block the response nearest to 1: a block that deviates here deviates in every exposure.
    const sensor_grid::Grid& NearestToSound() const { return nearest_; }

  private:
    int count_ = 0;
    float weight_ = 0;
    sensor_grid::Grid sum_;
    sensor_grid::Grid nearest_;
};

#endif  // VELMARCON_CALIBRATE_FLAT_STACK_H
