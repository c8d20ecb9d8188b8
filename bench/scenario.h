// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BENCH_SCENARIO_H
#define VELMARCON_BENCH_SCENARIO_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a run of the program is measured against.
enum class Yardstick {
    kCopyOfInputs,     ///< cp of the raw files (and dark frames) that the run reads
    kCopyOfOutputs,    ///< cp of the files that the run writes
    kPlainConversion,  ///< the program without options
};

/// One use of the program, and how much it may cost.
struct Scenario {
    std::string_view name;
    std::vector<std::string> options = {};  ///< besides -i and -o
    /// Extensions of the files that it reads; of the first kind there is one an image.
    std::vector<std::string> inputs;
    Yardstick yardstick;
    double most_time = 0;            ///< target, in times the yardstick's; 0: none
    double most_memory = 0;          ///< target for the peak, in times one file; 0: none
    bool memory_in_outputs = false;  ///< whether that is a file written, not one read
};

std::span<const Scenario> Scenarios();

/// The scenario of that name, null if there is none.
const Scenario* FindScenario(std::string_view name);

#endif  // VELMARCON_BENCH_SCENARIO_H
