// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DARK_CHECK_H
#define VELMARCON_CALIBRATE_DARK_CHECK_H

#include <span>
#include <string>
#include <vector>

#include "calibrate/block_means.h"
#include "calibrate/dark_stack.h"

/// Why an exposure with the given ISO gain and column levels is not dark; empty if it seems dark. The
/// criteria are its level, which in the dark is far below 300 raw units at the base ISO, and shading from top
/// to bottom, which is caused by light but not by columns.
std::string WhyNotDark(const BlockMeans& blocks, const std::vector<float>& columns, float gain);

/// The exposures whose column levels, averaged over 62 columns, differ from those of the majority by 4 raw
/// units at the base ISO. If there are only two and they differ, only the one with the greater range is
/// returned.
std::vector<std::size_t> FarFromOthers(std::span<const DarkExposure> exposures);

#endif  // VELMARCON_CALIBRATE_DARK_CHECK_H
