// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_RUN_SUMMARY_H
#define VELMARCON_BATCH_RUN_SUMMARY_H

#include <string>

#include "batch/picture_search.h"
#include "batch/plan.h"
#include "batch/run_outcome.h"
#include "batch/tally.h"

/// What a run has come to.
struct RunResult {
    const FoundPictures& found;
    const Plan& plan;
    const Tally& tally;
    const RunOutcome& outcome;
    std::string report;         ///< path
    double seconds = 0;         ///< that the work took
    bool disk_is_full = false;  ///< it ended the run
};

/// Prints the summary: names, as far as there are not too many, then counts. With `quiet`, only what calls
/// for something to be done.
void TellSummary(const RunResult& result, bool quiet);

#endif  // VELMARCON_BATCH_RUN_SUMMARY_H
