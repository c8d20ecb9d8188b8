// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DARK_DEFECTS_H
#define VELMARCON_CALIBRATE_DARK_DEFECTS_H

#include <vector>

#include "calibrate/dark_stack.h"
#include "calibrate/defect.h"
#include "calibrate/sensor_grid.h"

/// Finds the columns that dark exposures show to be defective. `combined` is `stack.Combined()`.
///
/// A constant offset that grows with the ISO gain is not a defect, because the column's level removes it. A
/// column is listed if
///   - a part of it differs from the rest (see segments.h); the neighbours' levels decide which part is the
///     sound one, and if they fit both, it is the lower one;
///   - all of it differs from its neighbours on both sides by more than columns of this sensor normally do:
///     by 5 times their standard deviation and by 5.5 raw units;
///   - its level does not grow with the ISO gain, or does not vary at all.
std::vector<Defect> FindDarkDefects(const DarkStack& stack, const sensor_grid::Grid& combined);

#endif  // VELMARCON_CALIBRATE_DARK_DEFECTS_H
