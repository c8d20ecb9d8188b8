// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BENCH_SCENARIO_H
#define VELMARCON_BENCH_SCENARIO_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a run of the program is compared with.
enum class Yardstick {
    kCopyOfInputs,     ///< cp of the raw files (and dark frames) that the run reads
    kCopyOfOutputs,    ///< cp of the files that the run writes
    kPlainConversion,  ///< the program without options
};

/// One use of the program, and how much it may cost.
struct Scenario {
    std::string_view name;
    std::vector<std::string> options = {};  ///< in addition to -i and -o
    /// Extensions of the input files; there is one file of the first extension per image.
    std::vector<std::string> inputs;
    Yardstick yardstick;
    double most_time = 0;            ///< target, relative to the yardstick; 0: none
    double most_memory = 0;          ///< target for the peak, relative to the size of one file; 0: none
    bool memory_in_outputs = false;  ///< whether that file is a DNG written rather than a RAW file read
};

std::span<const Scenario> Scenarios();

/// The scenario called `name`, or null if there is none.
const Scenario* FindScenario(std::string_view name);

#endif  // VELMARCON_BENCH_SCENARIO_H
