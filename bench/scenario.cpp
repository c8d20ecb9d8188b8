// SPDX-License-Identifier: MIT
#include "bench/scenario.h"

#include <algorithm>

std::span<const Scenario> Scenarios() {
    static const std::vector<Scenario> scenarios = {
        {.name = "tiffcp",
         .label = "tiffcp -r 64",
         .other_program = {"sh", "-c", R"(for f do tiffcp -r 64 "$f" "$f.tiff" 2>/dev/null || exit; done)",
                           "sh"},
         .inputs = {".DNG"},
         .output = ".tiff",
         .yardstick = Yardstick::kCopyOfInputs},
        {.name = "libraw",
         .label = "unprocessed_raw -T",
         .other_program = {"unprocessed_raw", "-T"},
         .inputs = {".DNG"},
         .output = ".tiff",
         .yardstick = Yardstick::kCopyOfInputs},
        {.name = "dcraw",
         .label = "dcraw -D -4 -T",
         .other_program = {"dcraw", "-D", "-4", "-T"},
         .inputs = {".DNG"},
         .output = ".tiff",
         .yardstick = Yardstick::kCopyOfInputs},
        {.name = "plain",
         .label = "velmarcon",
         .inputs = {".RAW"},
         .yardstick = Yardstick::kCopyOfInputs,
         .most_time = 1.35},
        {.name = "sensor",
         .label = "velmarcon -s",
         .options = {"-s"},
         .inputs = {".RAW"},
         .yardstick = Yardstick::kPlainConversion,
         .most_time = 1.3},
        {.name = "rows",
         .label = "velmarcon -sb",
         .options = {"-sb"},
         .inputs = {".RAW"},
         .yardstick = Yardstick::kPlainConversion,
         .most_time = 1.45},
        {.name = "dark",
         .label = "velmarcon -b",
         .options = {"-b"},
         .inputs = {".RAW", ".BIA"},
         .yardstick = Yardstick::kCopyOfInputs,
         .most_time = 1.2},
        {.name = "repair",
         .label = "velmarcon, repair",
         .inputs = {".DNG"},
         .yardstick = Yardstick::kCopyOfOutputs,
         .most_time = 1.4},
        {.name = "calibrate",
         .label = "velmarcon-calibrate",
         .calibrates = true,
         .inputs = {".RAW", ".JPG"},
         .output = ".ini",
         .yardstick = Yardstick::kCopyOfInputs,
         .most_time = 2.5},
    };
    return scenarios;
}

const Scenario* FindScenario(std::string_view name) {
    const auto scenarios = Scenarios();
    const auto found = std::ranges::find(scenarios, name, &Scenario::name);
    return found == scenarios.end() ? nullptr : &*found;
}
