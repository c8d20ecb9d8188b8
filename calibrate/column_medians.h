// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_COLUMN_MEDIANS_H
#define VELMARCON_CALIBRATE_COLUMN_MEDIANS_H

#include <vector>

#include "calibrate/sensor_grid.h"
#include "sensor/instruction_set.h"

/// The median of the blocks of each column. `grid` is whole and holds no NaN.
std::vector<float> ColumnMedians(const sensor_grid::Grid& grid,
                                 InstructionSet version = instruction_set::Best());

#endif  // VELMARCON_CALIBRATE_COLUMN_MEDIANS_H
