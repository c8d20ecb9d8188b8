// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DARK_DEFECTS_H
#define VELMARCON_CALIBRATE_DARK_DEFECTS_H

#include <vector>

#include "calibrate/dark_stack.h"
#include "calibrate/defect.h"
#include "calibrate/sensor_grid.h"

/// Finds the columns that dark exposures show to be defective. `combined` is the stack's.
///
/// What a level explains is no defect: it takes away any constant that grows with the ISO gain. So a column
/// is listed
///  - where a part of it differs from the rest of it (see segments.h). Which part is the sound one is decided
///  by the
///    neighbours' levels; when these allow both, the lower one is;
///  - when it is as a whole further from its neighbours than columns of this sensor are by nature: 5 times
///  their
///    standard deviation, and 5.5 raw units, on both sides;
///  - when its level does not grow with the ISO gain, or does not vary at all.
std::vector<Defect> FindDarkDefects(const DarkStack& stack, const sensor_grid::Grid& combined);

#endif  // VELMARCON_CALIBRATE_DARK_DEFECTS_H
