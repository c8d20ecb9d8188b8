// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BENCH_TIMED_RUN_H
#define VELMARCON_BENCH_TIMED_RUN_H

#include <string>
#include <vector>

/// What one run of a program cost.
struct RunCost {
    bool succeeded = false;
    double wall_seconds = 0;
    double cpu_seconds = 0;   ///< user plus system
    long peak_kilobytes = 0;  ///< peak resident set size
    long page_faults = 0;     ///< minor faults
};

/// Runs `command` (its program is looked up in PATH) to completion and discards its output.
RunCost TimedRun(const std::vector<std::string>& command);

#endif  // VELMARCON_BENCH_TIMED_RUN_H
