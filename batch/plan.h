// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PLAN_H
#define VELMARCON_BATCH_PLAN_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "batch/batch_options.h"
#include "batch/jobs.h"
#include "batch/picture.h"
#include "batch/run_state.h"

/// What there is to do, of what was found.
struct Plan {
    /// Counts a DNG that is kept if it was made with other options than those that are asked for.
    void CountOptions(const std::vector<std::string>& made_with, const std::vector<std::string>& asked_for);

    std::vector<Task> tasks;          ///< for the workers
    std::vector<std::uint64_t> kept;  ///< numbers of the pictures whose DNG is known to be there
    std::vector<std::string> flaws;   ///< of these, in the same order; most are empty
    std::vector<std::string> sums;    ///< likewise, their check sums; empty unless they are asked for
    std::size_t other_options = 0;    ///< how many of them were made with other options
    std::string options_of_others;    ///< the first such, to be read
    std::size_t refreshed = 0;        ///< tasks that an interrupted run with -r has done
    std::size_t to_make = 0;          ///< tasks whose DNG is not there, or is to be replaced
};

/// Goes through the pictures; what the ledger knows and nobody has touched needs no worker.
Plan MakePlan(const BatchOptions& options, std::span<const Tree> trees, std::span<const Picture> pictures,
              const RunState& state, const Ledger& ledger);

#endif  // VELMARCON_BATCH_PLAN_H
