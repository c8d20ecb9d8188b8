// SPDX-License-Identifier: MIT
// bench_conversion PROGRAM FOLDER [ROUNDS]: converts the pairs in FOLDER with PROGRAM and, in turn with that,
// copies their RAW files with cp into the same folder under fresh names, ROUNDS times each (default 15) after
// one round that warms the cache. Prints what the conversion cost as ratios to the copy of the same round: no
// bare times, because they say more about the machine than about the program.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/timed_run.h"

namespace {

namespace fs = std::filesystem;

constexpr double kRawKilobytes = 21041100 / 1024.0;

std::vector<std::string> FilesWithExtension(const fs::path& folder, const std::string& extension) {
    std::vector<std::string> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == extension) {
            files.push_back(entry.path().string());
        }
    }
    std::ranges::sort(files);
    return files;
}

void RemoveFiles(const fs::path& folder, const std::string& extension) {
    for (const std::string& file : FilesWithExtension(folder, extension)) {
        fs::remove(file);
    }
}

/// cp of the RAW files into a folder beside them, which is removed again.
RunCost CopyRawFiles(const fs::path& folder) {
    const fs::path copies = folder / "copies";
    fs::create_directory(copies);
    std::vector<std::string> command = {"cp"};
    std::ranges::copy(FilesWithExtension(folder, ".RAW"), std::back_inserter(command));
    command.push_back(copies.string());
    const RunCost cost = TimedRun(command);
    fs::remove_all(copies);
    return cost;
}

RunCost Convert(const std::string& program, const fs::path& folder) {
    RemoveFiles(folder, ".DNG");
    const RunCost cost = TimedRun({program, "-i", folder.string()});
    const bool complete =
        FilesWithExtension(folder, ".DNG").size() == FilesWithExtension(folder, ".RAW").size();
    RemoveFiles(folder, ".DNG");
    if (!cost.succeeded || !complete) {
        std::fprintf(stderr, "bench_conversion: %s left images unconverted\n", program.c_str());
        std::exit(EXIT_FAILURE);
    }
    return cost;
}

void PrintRatios(const char* what, std::vector<double> ratios) {
    std::ranges::sort(ratios);
    std::printf("  %-28s %5.2f x cp  (least %.2f, most %.2f)\n", what, ratios[ratios.size() / 2],
                ratios.front(), ratios.back());
}

void Measure(const std::string& program, const fs::path& folder, int rounds) {
    std::vector<double> wall;
    std::vector<double> cpu;
    RunCost conversion;
    for (int round = 0; round <= rounds; ++round) {
        const RunCost copy = CopyRawFiles(folder);
        conversion = Convert(program, folder);
        if (round > 0) {
            wall.push_back(conversion.wall_seconds / copy.wall_seconds);
            cpu.push_back(conversion.cpu_seconds / copy.cpu_seconds);
        }
    }
    const auto pairs = FilesWithExtension(folder, ".RAW").size();
    std::printf("%s: %zu pairs, %d rounds\n", folder.c_str(), pairs, rounds);
    PrintRatios("wall time, median", wall);
    PrintRatios("CPU time, median", cpu);
    std::printf("  %-28s %5.2f x one RAW file\n", "peak memory",
                static_cast<double>(conversion.peak_kilobytes) / kRawKilobytes);
    std::printf("  %-28s %5.1f an image\n", "page faults",
                static_cast<double>(conversion.page_faults) / static_cast<double>(pairs));
}

}  // namespace

int main(int argc, char* argv[]) {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (arguments.size() < 3) {
        std::fprintf(stderr, "Usage: bench_conversion PROGRAM FOLDER [ROUNDS]\n");
        return EXIT_FAILURE;
    }
    constexpr int default_rounds = 15;
    const int rounds = arguments.size() > 3 ? std::max(1, std::atoi(arguments[3].c_str())) : default_rounds;
    Measure(arguments[1], arguments[2], rounds);
    return EXIT_SUCCESS;
}
