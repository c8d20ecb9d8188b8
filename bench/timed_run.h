// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BENCH_TIMED_RUN_H
#define VELMARCON_BENCH_TIMED_RUN_H

#include <string>
#include <vector>

/// What one run of a program cost.
struct RunCost {
    bool succeeded = false;
    double wall_seconds = 0;
    double cpu_seconds = 0;   ///< user and system
    long peak_kilobytes = 0;  ///< largest resident set
    long page_faults = 0;     ///< minor ones
};

/// Runs `command` (its program is looked up in PATH) to its end, its output thrown away.
RunCost TimedRun(const std::vector<std::string>& command);

#endif  // VELMARCON_BENCH_TIMED_RUN_H
