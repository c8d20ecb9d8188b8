// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BENCH_PAIRED_RUNS_H
#define VELMARCON_BENCH_PAIRED_RUNS_H

#include <cstddef>
#include <string>
#include <vector>

#include "bench/scenario.h"
#include "bench/timed_run.h"

/// What a scenario and its yardstick cost, one value per round.
struct PairedCosts {
    std::vector<RunCost> scenario;
    std::vector<RunCost> yardstick;
    std::size_t images = 0;
};

/// Runs `program` on the files in `folder` as `scenario` says, alternating with the yardstick, `rounds` times
/// each after one round that warms the cache. All output goes below `folder` and is removed again. Returns an
/// error message, empty on success.
std::string RunPaired(const Scenario& scenario, const std::string& program, const std::string& folder,
                      int rounds, PairedCosts& costs);

#endif  // VELMARCON_BENCH_PAIRED_RUNS_H
