// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BENCH_PAIRED_RUNS_H
#define VELMARCON_BENCH_PAIRED_RUNS_H

#include <cstddef>
#include <string>
#include <vector>

#include "bench/scenario.h"
#include "bench/timed_run.h"

/// What a scenario and its yardstick cost, round by round.
struct PairedCosts {
    std::vector<RunCost> scenario;
    std::vector<RunCost> yardstick;
    std::size_t images = 0;
    double input_kilobytes = 0;   ///< of one raw file
    double output_kilobytes = 0;  ///< of one DNG written
};

/// Runs `program` on the files in `folder` as `scenario` says and, in turn with that, the yardstick, `rounds`
/// times each after a round that warms the cache. All files are written below `folder` and removed again.
/// Returns an empty text, or what went wrong.
std::string RunPaired(const Scenario& scenario, const std::string& program, const std::string& folder,
                      int rounds, PairedCosts& costs);

#endif  // VELMARCON_BENCH_PAIRED_RUNS_H
