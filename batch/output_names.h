// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_OUTPUT_NAMES_H
#define VELMARCON_BATCH_OUTPUT_NAMES_H

#include <span>
#include <string>

#include "batch/picture.h"
#include "batch/trees.h"

/// Two pictures whose DNGs would have different names that the file system of the output does not tell apart,
/// such as "L1.DNG" and "l1.DNG": "PATH and PATH", or an empty text if there are none.
std::string ProblemOfNames(std::span<const Tree> trees, std::span<const Picture> pictures);

#endif  // VELMARCON_BATCH_OUTPUT_NAMES_H
