// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BENCH_SCENARIO_H
#define VELMARCON_BENCH_SCENARIO_H

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What a run is compared with.
enum class Yardstick {
    kCopyOfInputs,     ///< cp of the raw files (and dark frames) that the run reads
    kCopyOfOutputs,    ///< cp of the files that the run writes
    kPlainConversion,  ///< the program without options
};

/// One use of the program, or of another one for the same frames, and how much it may cost.
struct Scenario {
    std::string_view name;
    std::string_view label;                 ///< for people
    std::vector<std::string> options = {};  ///< of the program, in addition to -i and -o
    /// Another program, which gets the paths of its files as further arguments and writes next to them.
    std::vector<std::string> other_program = {};
    bool calibrates = false;  ///< the program is velmarcon-calibrate, which makes one file of all images
    /// Extensions of the input files; there is one file of the first extension per image.
    std::vector<std::string> inputs;
    std::string_view output = ".DNG";  ///< extension of the files that it writes
    Yardstick yardstick;
    double most_time = 0;  ///< target, relative to the yardstick; 0: none
};

std::span<const Scenario> Scenarios();

/// The scenario called `name`, or null if there is none.
const Scenario* FindScenario(std::string_view name);

#endif  // VELMARCON_BENCH_SCENARIO_H
