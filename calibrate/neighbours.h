// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_NEIGHBOURS_H
#define VELMARCON_CALIBRATE_NEIGHBOURS_H

#include <span>
#include <vector>

/// How far a column stands out from the columns of the same colour next to it.
struct StandOut {
    float from_both = 0;  ///< above the median of those on both sides
    float clearly =
        0;  ///< by how much it is above, or below, those on either side; 0 when it lies between them
};

/// For each of `values`, one a column, with up to `reach` columns of the same colour on either side. With
/// `by_halves` the columns beyond the middle of the sensor, which are read out apart, are no neighbours. At
/// an edge there is only one side.
std::vector<StandOut> CompareNeighbours(std::span<const float> values, int reach, bool by_halves);

#endif  // VELMARCON_CALIBRATE_NEIGHBOURS_H
