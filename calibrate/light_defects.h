// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_LIGHT_DEFECTS_H
#define VELMARCON_CALIBRATE_LIGHT_DEFECTS_H

#include <vector>

#include "calibrate/dark_levels.h"
#include "calibrate/defect.h"
#include "calibrate/flat_stack.h"

/// Finds the columns that respond to light incorrectly, from flat exposures. Rows in `listed` are ignored.
///
/// A column, or a part of it, must respond less than its neighbours of the same colour on both sides, or more
/// than both, so that neither vignetting nor an edge in the light counts. A part must be longer than dust is
/// wide. A whole column must differ by more than columns of this sensor normally do (5 standard deviations)
/// and by 1.5 per cent.
std::vector<Defect> FindLightDefects(const FlatStack& stack, const DefectMask& listed);

#endif  // VELMARCON_CALIBRATE_LIGHT_DEFECTS_H
