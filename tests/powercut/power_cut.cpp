// SPDX-License-Identifier: MIT
// power_cut PROGRAM TRIALS FILE_SYSTEM...: runs PROGRAM on disks of each kind and examines their states after
// a power cut: after every prefix of the writes, and TRIALS times with some of the unflushed writes lost.
// Prints the results. Requires root and a kernel with network block devices; meant to run in a separate
// machine.
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "tests/powercut/trial.h"

namespace powercut {

namespace {

/// Makes the kernel write back data after one second instead of half a minute.
void WriteBackSoon() {
    std::ofstream("/proc/sys/vm/dirty_expire_centisecs") << 100;
    std::ofstream("/proc/sys/vm/dirty_writeback_centisecs") << 20;
}

std::vector<CrashPoint> Prefixes(const Trial& trial) {
    std::vector<CrashPoint> points;
    for (std::size_t i = 0; i <= trial.Requests(); ++i) {
        points.push_back({.requests = trial.Start() + i});
    }
    return points;
}

std::vector<CrashPoint> Losses(const Trial& trial, std::uint32_t count) {
    std::vector<CrashPoint> points;
    std::mt19937 random(count);
    for (std::uint32_t seed = 0; seed < count; ++seed) {
        const std::size_t requests = std::uniform_int_distribution<std::size_t>(0, trial.Requests())(random);
        const double lost = std::uniform_real_distribution(0.05, 0.95)(random);
        points.push_back({.requests = trial.Start() + requests, .lost = lost, .seed = seed});
    }
    return points;
}

std::string Counts(const std::map<State, std::size_t>& states) {
    std::string text;
    for (const auto& [state, count] : states) {
        text += " " + std::to_string(count) + " " + Name(state);
    }
    return text;
}

void Print(const std::string& title, const Tally& tally) {
    std::cout << title << ": " << tally.points << " power cuts;";
    if (!tally.replaced.empty()) {
        std::cout << " replaced:" << Counts(tally.replaced) << " (" << tally.put_back << " put back);";
    }
    if (!tally.after_further_run.empty()) {
        std::cout << " after a further run:" << Counts(tally.after_further_run) << ";";
    }
    if (!tally.made.empty()) {
        std::cout << " new:" << Counts(tally.made) << ";";
    }
    if (tally.needed_check > 0) {
        std::cout << " only after a check: " << tally.needed_check << ";";
    }
    std::cout << " violations after " << tally.bad_points << " of them" << std::endl;
    constexpr std::size_t shown = 2;
    for (std::size_t i = 0; i < tally.violations.size() && i < shown; ++i) {
        std::cout << "  " << tally.violations[i] << std::endl;
    }
}

/// Returns the number of violations.
std::size_t Run(const FileSystem& file_system, const std::string& program, std::uint32_t losses) {
    std::size_t violations = 0;
    for (const Scenario& scenario : {RepairInPlace(), NewDng(), DarkReference()}) {
        const Trial trial(file_system, scenario, program);
        const std::string title = file_system.name + ", " + scenario.name;
        const auto cut = [&](const std::string& how, const std::vector<CrashPoint>& points, bool checked) {
            const auto begin = std::chrono::steady_clock::now();
            Tally tally;
            for (const CrashPoint& point : points) {
                trial.Cut(point, checked, tally);
            }
            const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
            Print(title + how + " (" + std::to_string(std::lround(time.count())) + " s)", tally);
            violations += tally.violations.size();
        };
        cut(", every prefix", Prefixes(trial), false);
        // Complete pictures take long, and the exact moment between two writes makes no difference to them.
        constexpr std::uint32_t fewer = 4;
        cut(", writes lost", Losses(trial, scenario.is_quick ? losses : losses / fewer), false);
        if (scenario.is_quick && !file_system.check.empty()) {
            cut(", every prefix, checked", Prefixes(trial), true);
        }
    }
    return violations;
}

int Main(const std::string& program, std::uint32_t losses, std::span<char*> names) {
    WriteBackSoon();
    std::size_t violations = 0;
    for (const std::string name : names) {
        for (const FileSystem& file_system : FileSystems()) {
            if (file_system.name == name) {
                violations += Run(file_system, program, losses);
            }
        }
    }
    return violations == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

}  // namespace powercut

int main(int argc, char** argv) {
    constexpr int fixed = 3;
    if (argc < fixed) {
        return EXIT_FAILURE;
    }
    const auto losses = static_cast<std::uint32_t>(std::strtoul(argv[2], nullptr, 10));
    return powercut::Main(argv[1], losses, std::span(argv, static_cast<std::size_t>(argc)).subspan(fixed));
}
