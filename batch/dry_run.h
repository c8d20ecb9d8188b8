// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_DRY_RUN_H
#define VELMARCON_BATCH_DRY_RUN_H

#include <span>

#include "batch/batch_options.h"
#include "batch/picture_search.h"
#include "batch/trees.h"

/// Prints what a run would do with each picture, without changing anything. Returns the status that the run
/// would end with, as far as can be seen beforehand.
[[nodiscard]] int DryRun(const BatchOptions& options, std::span<const Tree> trees,
                         const FoundPictures& found);

#endif  // VELMARCON_BATCH_DRY_RUN_H
