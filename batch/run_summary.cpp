// SPDX-License-Identifier: MIT
#include "batch/run_summary.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <vector>

#include "batch/passed_over.h"
#include "batch/shown.h"
#include "batch/told_lines.h"

namespace {

using told_lines::PrintNamed;

void TellRenamed(const std::vector<std::string>& renamed) {
    constexpr std::size_t most = 10;
    const auto end = renamed.begin() + static_cast<std::ptrdiff_t>(std::min(renamed.size(), most));
    PrintNamed("Renamed", {renamed.begin(), end}, renamed.size());
}

void TellRemarks(const RunResult& result) {
    const Tally& tally = result.tally;
    if (tally.remarked() > 0) {
        told_lines::Say(false,
                        std::to_string(tally.remarked()) + " with a remark: see " + Shown(result.report));
        PrintNamed("Remark", tally.remarks(), tally.remarked());
    }
}

void TellFailures(const Tally& tally, bool quiet) {
    PrintNamed("Damaged", tally.flaws(), tally.flawed());
    PrintNamed("Failed", tally.failures(), tally.failed());
    if (tally.failed() > 1 && !quiet) {
        for (const auto& [kind, number] : tally.kinds()) {
            std::printf("%zu failed: %s\n", number, kind.c_str());
        }
    }
}

void TellUnreadFolders(const std::vector<std::string>& unread) {
    if (!unread.empty()) {
        std::printf("Not all folders could be read:\n");
        for (const std::string& line : unread) {
            std::printf("%s\n", Shown(line).c_str());
        }
    }
}

void TellOtherOptions(const Plan& plan) {
    if (plan.other_options > 0) {
        told_lines::Say(false, std::to_string(plan.other_options) +
                                   " already there, made with other options (" + plan.options_of_others +
                                   "); -r makes them anew");
    }
}

void TellSpeed(std::size_t converted, double seconds) {
    constexpr double moment = 0.05;
    if (converted > 0 && seconds > moment) {
        std::array<char, 32> each = {};
        (void)std::snprintf(each.data(), each.size(), "%.1f", static_cast<double>(converted) / seconds);
        told_lines::Say(false, Duration(seconds) + ", " + each.data() + " pictures a second");
    }
}

std::string Counts(const RunResult& result) {
    const Tally& tally = result.tally;
    std::string line = NumberOfPictures(result.found.pictures.size()) + ": " +
                       std::to_string(tally.converted()) + " converted, " + std::to_string(tally.kept()) +
                       " already there, " + std::to_string(tally.failed()) + " failed";
    if (const std::size_t unreached = result.outcome.unreached(); unreached > 0) {
        line += ", " + std::to_string(unreached) + (result.disk_is_full ? " not done" : " not reached");
    }
    if (const std::size_t flawed = tally.flawed(); flawed > 0) {
        line += "; " + std::to_string(flawed) + (flawed == 1 ? " of these is" : " of these are") + " damaged";
    }
    return line;
}

}  // namespace

/// The counts stand last, where they are seen.
void TellSummary(const RunResult& result, bool quiet) {
    passed_over::Tell(result.found, quiet);
    if (!quiet) {
        TellRenamed(result.outcome.renamed());
        TellRemarks(result);
    }
    TellFailures(result.tally, quiet);
    TellUnreadFolders(result.found.unread);
    if (!quiet) {
        TellOtherOptions(result.plan);
        TellSpeed(result.tally.converted(), result.seconds);
        told_lines::Say(false, Counts(result));
    }
}
