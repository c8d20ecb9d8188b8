// SPDX-License-Identifier: MIT
#include "tests/matrix/tally.h"

#include <algorithm>
#include <cstdio>

namespace matrix {

void Tally::Count(const Case& one, const std::string& outcome) {
    const std::lock_guard lock(mutex_);
    ++groups_[one.group][outcome];
    constexpr std::size_t progress_step = 1000;
    if (++cases_ % progress_step == 0) {
        std::printf("%zu cases run\n", cases_);
        (void)std::fflush(stdout);
    }
}

void Tally::Measure(const std::string& program, const Case& one, const Ending& ending) {
    const std::lock_guard lock(mutex_);
    Largest& largest = largest_[program];
    if (ending.cpu_seconds > largest.cpu_seconds) {
        largest.cpu_seconds = ending.cpu_seconds;
        largest.slowest = one.name;
    }
    if (ending.peak_kilobytes > largest.peak_kilobytes) {
        largest.peak_kilobytes = ending.peak_kilobytes;
        largest.greediest = one.name;
    }
}

void Tally::Fail(const std::string& name, const std::string& fault) {
    const std::lock_guard lock(mutex_);
    std::printf("FAILED %s\n  %s\n", name.c_str(), fault.c_str());
    (void)std::fflush(stdout);
    failures_.push_back(name);
}

std::size_t Tally::Print() const {
    const std::lock_guard lock(mutex_);
    for (const auto& [group, outcomes] : groups_) {
        std::size_t sum = 0;
        for (const auto& [outcome, count] : outcomes) {
            sum += count;
        }
        std::printf("%s: %zu cases\n", group.c_str(), sum);
        for (const auto& [outcome, count] : outcomes) {
            std::printf("  %6zu  %s\n", count, outcome.c_str());
        }
    }
    for (const auto& [program, largest] : largest_) {
        std::printf("%s: at most %.3f s of CPU time (%s) and %ld KiB of memory (%s)\n", program.c_str(),
                    largest.cpu_seconds, largest.slowest.c_str(), largest.peak_kilobytes,
                    largest.greediest.c_str());
    }
    std::printf("%zu cases, %zu failures\n", cases_, failures_.size());
    for (const std::string& name : failures_) {
        std::printf("  ./scripts/test-matrix --case '%s' --keep /tmp/matrix-case\n", name.c_str());
    }
    return failures_.size();
}

}  // namespace matrix
