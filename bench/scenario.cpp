// SPDX-License-Identifier: MIT
#include "bench/scenario.h"

#include <algorithm>

std::span<const Scenario> Scenarios() {
    static const std::vector<Scenario> scenarios = {
        {.name = "plain", .inputs = {".RAW"}, .yardstick = Yardstick::kCopyOfInputs},
        {.name = "sensor",
         .options = {"-s"},
         .inputs = {".RAW"},
         .yardstick = Yardstick::kPlainConversion,
         .most_time = 1.7},
        {.name = "rows",
         .options = {"-sb"},
         .inputs = {".RAW"},
         .yardstick = Yardstick::kPlainConversion,
         .most_time = 2},
        {.name = "dark",
         .options = {"-b"},
         .inputs = {".RAW", ".BIA"},
         .yardstick = Yardstick::kCopyOfInputs,
         .most_time = 1.4,
         .most_memory = 2.3},
        {.name = "repair",
         .inputs = {".DNG"},
         .yardstick = Yardstick::kCopyOfOutputs,
         .most_time = 1.8,
         .most_memory = 1.6,
         .memory_in_outputs = true},
    };
    return scenarios;
}

const Scenario* FindScenario(std::string_view name) {
    const auto scenarios = Scenarios();
    const auto found = std::ranges::find(scenarios, name, &Scenario::name);
    return found == scenarios.end() ? nullptr : &*found;
}
