// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_FLAT_STACK_H
#define VELMARCON_CALIBRATE_FLAT_STACK_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "calibrate/block_means.h"
#include "calibrate/sensor_grid.h"

/// Flat exposures on top of each other: how each block answers light, as a part of what the row of blocks
/// answers on average, each colour by itself. Memory does not depend on their number.
class FlatStack {
  public:
    /// Takes the blocks of the even and of the odd rows of an exposure, and what each column gives in the
    /// dark at its ISO speed. Returns why the exposure was left out, or an empty text: its light must be
    /// even, and between 10 and 70 % of the range.
    [[nodiscard]] std::string Add(const BlockMeans& even, const BlockMeans& odd, std::span<const float> dark);

    int count() const { return count_; }

    /// The answers of all, weighted by their light.
    sensor_grid::Grid Combined() const;

    /// Of each block the answer nearest to 1: what is wrong in it is wrong in every exposure.
    const sensor_grid::Grid& NearestToSound() const { return nearest_; }

  private:
    int count_ = 0;
    float weight_ = 0;
    sensor_grid::Grid sum_;
    sensor_grid::Grid nearest_;
};

#endif  // VELMARCON_CALIBRATE_FLAT_STACK_H
