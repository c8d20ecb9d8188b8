// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_NEIGHBOURS_H
#define VELMARCON_CALIBRATE_NEIGHBOURS_H

#include <span>
#include <vector>

/// How far a column differs from its neighbours of the same colour.
struct StandOut {
    float from_both = 0;  ///< difference from the median of the neighbours on both sides
    /// The smaller difference from either side; 0 if the column lies between the two sides.
    float clearly = 0;
};

/// Compares each of `values`, one per column, with up to `reach` columns of the same colour on either side.
/// With `by_halves`, columns in the other half of the sensor, which is read out separately, do not count as
/// neighbours. At an edge there is only one side.
std::vector<StandOut> CompareNeighbours(std::span<const float> values, int reach, bool by_halves);

#endif  // VELMARCON_CALIBRATE_NEIGHBOURS_H
