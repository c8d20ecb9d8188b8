// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DARK_CHECK_H
#define VELMARCON_CALIBRATE_DARK_CHECK_H

#include <span>
#include <string>
#include <vector>

#include "calibrate/block_means.h"
#include "calibrate/dark_stack.h"

/// Why an exposure with the given ISO gain, whose columns have these levels, is not dark; empty when nothing
/// says so. Told by its level, which is far below 300 raw units at the base ISO in the dark, and by shading
/// from top to bottom, which light makes and columns do not.
std::string WhyNotDark(const BlockMeans& blocks, const std::vector<float>& columns, float gain);

/// The exposures whose columns, seen from afar, differ from what most of them have: by 4 raw units at the
/// base ISO over 62 columns. Of two that differ it is the one with the greater differences in itself.
std::vector<std::size_t> FarFromOthers(std::span<const DarkExposure> exposures);

#endif  // VELMARCON_CALIBRATE_DARK_CHECK_H
