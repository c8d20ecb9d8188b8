// SPDX-License-Identifier: MIT
// bench_conversion SCENARIO PROGRAM FOLDER [ROUNDS]: runs PROGRAM on the files in FOLDER as the scenario says
// (see scenario.cpp), alternating with the scenario's yardstick, ROUNDS times each (default 15). Prints one
// line, its fields separated by tabs: what ran; the yardstick; the median of the ratios of the wall times,
// and the ratio of the best runs; the same of the CPU times; the peak memory in MiB; page faults per image;
// the target for the wall time, or "-". It prints no bare times, because they say more about the machine than
// about the program.
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
            return "velmarcon";
        case Yardstick::kCopyOfOutputs:
            return "cp of its output";
        default:
            return "cp of its input";
    }
}

/// On a busy machine the median of the ratios is noisy; the ratio of the best runs shows what the program
/// itself costs.
void PrintTime(const PairedCosts& costs, double RunCost::*time) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < costs.scenario.size(); ++i) {
        ratios.push_back(costs.scenario[i].*time / costs.yardstick[i].*time);
    }
    std::ranges::sort(ratios);
    const auto best = [time](const std::vector<RunCost>& runs) {
        const auto least = [time](const RunCost& a, const RunCost& b) { return a.*time < b.*time; };
        return (*std::ranges::min_element(runs, least)).*time;
    };
    std::printf("\t%.2f\t%.2f", ratios[ratios.size() / 2], best(costs.scenario) / best(costs.yardstick));
}

void Print(const Scenario& scenario, const PairedCosts& costs) {
    std::printf("%s\t%s", scenario.label.data(), NameOf(scenario.yardstick));
    PrintTime(costs, &RunCost::wall_seconds);
    PrintTime(costs, &RunCost::cpu_seconds);
    constexpr double kilobytes = 1024;
    const auto largest = std::ranges::max_element(costs.scenario, {}, &RunCost::peak_kilobytes);
    std::printf("\t%.1f\t%.0f", static_cast<double>(largest->peak_kilobytes) / kilobytes,
                static_cast<double>(costs.scenario.back().page_faults) / static_cast<double>(costs.images));
    if (scenario.most_time > 0) {
        std::printf("\t%.2f\n", scenario.most_time);
    } else {
        std::printf("\t-\n");
    }
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
    Print(*scenario, costs);
    return EXIT_SUCCESS;
}
