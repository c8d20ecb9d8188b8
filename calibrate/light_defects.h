// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_LIGHT_DEFECTS_H
#define VELMARCON_CALIBRATE_LIGHT_DEFECTS_H

#include <vector>

#include "calibrate/dark_levels.h"
#include "calibrate/defect.h"
#include "calibrate/flat_stack.h"

/// Finds the columns that flat exposures show to answer light wrongly. What `listed` holds already is not
/// looked at.
///
/// A column, or a part of it, must answer less than its neighbours of the same colour on the left and less
/// than those on the right, or more than both: so neither vignetting nor an edge in the light counts. A part
/// must be longer than dust is wide; a whole column must differ by more than columns of this sensor do by
/// nature (5 standard deviations) and by 1.5 per cent.
std::vector<Defect> FindLightDefects(const FlatStack& stack, const DefectMask& listed);

#endif  // VELMARCON_CALIBRATE_LIGHT_DEFECTS_H
