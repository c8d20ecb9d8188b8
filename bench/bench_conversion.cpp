// SPDX-License-Identifier: MIT
// bench_conversion SCENARIO PROGRAM FOLDER [ROUNDS]: runs PROGRAM on the files in FOLDER as the scenario says
// (see scenario.cpp), alternating with the scenario's yardstick, ROUNDS times each (default 15). Prints the
// cost as ratios, next to the target if there is one. It prints no bare times, because they say more about
// the machine than about the program.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "bench/paired_runs.h"
#include "bench/scenario.h"

namespace {

const char* NameOf(Yardstick yardstick) {
    switch (yardstick) {
        case Yardstick::kPlainConversion:
            return "a plain conversion";
        case Yardstick::kCopyOfOutputs:
            return "cp of its output";
        default:
            return "cp of its input";
    }
}

void PrintTarget(double most) {
    if (most > 0) {
        std::printf("; target: at most %.1f", most);
    }
    std::printf("\n");
}

/// On a busy machine the median of the ratios is noisy; the ratio of the best runs shows what the program
/// itself costs.
void PrintTime(const char* what, const PairedCosts& costs, double RunCost::*time, double most) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < costs.scenario.size(); ++i) {
        ratios.push_back(costs.scenario[i].*time / costs.yardstick[i].*time);
    }
    std::ranges::sort(ratios);
    const auto best = [time](const std::vector<RunCost>& runs) {
        const auto least = [time](const RunCost& a, const RunCost& b) { return a.*time < b.*time; };
        return (*std::ranges::min_element(runs, least)).*time;
    };
    std::printf("  %-12s %5.2f  (best against best %.2f; least %.2f, most %.2f)", what,
                ratios[ratios.size() / 2], best(costs.scenario) / best(costs.yardstick), ratios.front(),
                ratios.back());
    PrintTarget(most);
}

void Print(const Scenario& scenario, const std::string& folder, const PairedCosts& costs) {
    std::string options;
    for (const std::string& option : scenario.options) {
        options += " " + option;
    }
    std::printf("%s%s: %zu images in %s, %zu rounds, in times %s:\n", scenario.name.data(), options.c_str(),
                costs.images, folder.c_str(), costs.scenario.size(), NameOf(scenario.yardstick));
    PrintTime("wall time", costs, &RunCost::wall_seconds, scenario.most_time);
    PrintTime("CPU time", costs, &RunCost::cpu_seconds, 0);

    const double unit = scenario.memory_in_outputs ? costs.output_kilobytes : costs.input_kilobytes;
    const auto largest = std::ranges::max_element(costs.scenario, {}, &RunCost::peak_kilobytes);
    std::printf("  %-12s %5.2f  times a file it %s", "peak memory",
                static_cast<double>(largest->peak_kilobytes) / unit,
                scenario.memory_in_outputs ? "writes" : "reads");
    PrintTarget(scenario.most_memory);
    std::printf("  %-12s %5.1f  an image\n", "page faults",
                static_cast<double>(costs.scenario.back().page_faults) / static_cast<double>(costs.images));
}

[[noreturn]] void Fail(const std::string& problem) {
    std::fprintf(stderr, "bench_conversion: %s\n", problem.c_str());
    std::exit(EXIT_FAILURE);
}

int Rounds(const std::string& text) {
    constexpr int decimal = 10;
    const long rounds = std::strtol(text.c_str(), nullptr, decimal);
    if (rounds < 1 || rounds > std::numeric_limits<int>::max()) {
        Fail("invalid number of rounds: " + text);
    }
    return static_cast<int>(rounds);
}

}  // namespace

int main(int argc, char* argv[]) {
    const std::vector<std::string> arguments(argv, argv + argc);
    const Scenario* const scenario = arguments.size() > 3 ? FindScenario(arguments[1]) : nullptr;
    if (scenario == nullptr) {
        std::string names;
        for (const Scenario& known : Scenarios()) {
            names += " " + std::string(known.name);
        }
        Fail("usage: bench_conversion SCENARIO PROGRAM FOLDER [ROUNDS]; scenarios:" + names);
    }
    constexpr int default_rounds = 15;
    const int rounds = arguments.size() > 4 ? Rounds(arguments[4]) : default_rounds;
    PairedCosts costs;
    const std::string problem = RunPaired(*scenario, arguments[2], arguments[3], rounds, costs);
    if (!problem.empty()) {
        Fail(problem);
    }
    Print(*scenario, arguments[3], costs);
    return EXIT_SUCCESS;
}
