// SPDX-License-Identifier: MIT
// Runs the program on file systems that have a fault or lack a feature.
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/stage.h"
#include "tests/file_systems/faulty_mount.h"
#include "tests/file_systems/folder_fault.h"
#include "tests/support/program.h"

namespace file_systems {

namespace {

using Wrong = std::vector<std::string>;

/// A scenario, and the folder that has the fault.
struct Place {
    const char* name;
    faults::Scenario (*scenario)();
    const char* folder;
};

void PrintTo(const Place& place, std::ostream* stream) {
    *stream << place.name;
}

class FaultyFileSystem : public testing::TestWithParam<std::tuple<Place, NamedFault>> {
  protected:
    const Place& place() const { return std::get<0>(GetParam()); }
    const NamedFault& fault() const { return std::get<1>(GetParam()); }

    /// Whether the program can complete the scenario in spite of the fault.
    bool CanDoAll() const {
        switch (fault().fault) {
            case FolderFault::kNone:
            case FolderFault::kShortWrites:
            case FolderFault::kPlainRenameOnly:
            case FolderFault::kUnstableInodes:
            case FolderFault::kLettersOfAnyCase:
                return true;
            default:
                return false;
        }
    }

    faults::Stage stage_ = faults::Stage(place().scenario());
};

TEST_P(FaultyFileSystem, KeepsTheOldOrTheNewFileAndNoLeftovers) {
    support::Outcome outcome;
    {
        const FaultyMount mount(fault().name, stage_.Path(place().folder), stage_.Path(place().folder));
        if (!mount.obstacle().empty()) {
            GTEST_SKIP() << mount.obstacle();
        }
        const faults::Command run = stage_.Run();
        outcome =
            support::RunProgram(VELMARCON_PROGRAM, run.arguments, {.folder = run.folder, .name = run.name});
    }
    if (CanDoAll()) {
        EXPECT_TRUE(stage_.Finished()) << outcome.output;
    }
    EXPECT_EQ(stage_.Violations({.outcome = outcome}), Wrong());
}

constexpr auto kPlaces = std::to_array<Place>({
    {"Conversion", faults::Conversion, "out"},
    {"Refresh", faults::SensorFix, "out"},
    {"Database", faults::DarkReference, "bin"},
    {"Repair", faults::Repair, "out"},
    {"RepairOverItself", faults::RepairOverItself, "card"},
});

INSTANTIATE_TEST_SUITE_P(FileSystems, FaultyFileSystem,
                         testing::Combine(testing::ValuesIn(kPlaces), testing::ValuesIn(kFolderFaults)),
                         [](const auto& tested) {
                             return std::get<0>(tested.param).name + std::string("With") +
                                    std::string(std::get<1>(tested.param).name);
                         });

}  // namespace

}  // namespace file_systems
