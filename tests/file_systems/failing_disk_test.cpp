// SPDX-License-Identifier: MIT
// A disk that takes what is written, and fails only when it is asked to keep it.
#include "tests/file_systems/failing_disk.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/stage.h"
#include "tests/support/program.h"

namespace file_systems {

namespace {

using Wrong = std::vector<std::string>;

TEST(FailingDisk, NeverReplacesAPictureByOneThatItCannotKeep) {
    faults::Stage stage(faults::RepairOverItself());
    const faults::Scratch backing;
    const FailingDisk disk(backing.path(), stage.Path("card"));
    if (!disk.obstacle().empty()) {
        GTEST_SKIP() << disk.obstacle();
    }
    stage.Restore();
    disk.Fill();
    const faults::Command run = stage.Run();
    constexpr int times = 3;  // a failure that was told once is forgotten by the system
    for (int i = 0; i < times; ++i) {
        const auto outcome =
            support::RunProgram(VELMARCON_PROGRAM, run.arguments, {.folder = run.folder, .name = run.name});
        EXPECT_NE(outcome.output.find("DNG not written: "), std::string::npos) << outcome.output;
        EXPECT_EQ(stage.IsMade("card/L1000001.DNG"), false);
        EXPECT_EQ(stage.Violations({.outcome = outcome, .obstacle_lasts = true}), Wrong());
    }
    disk.Empty();
    const auto outcome =
        support::RunProgram(VELMARCON_PROGRAM, run.arguments, {.folder = run.folder, .name = run.name});
    EXPECT_TRUE(stage.IsMade("card/L1000001.DNG")) << outcome.output;
}

}  // namespace

}  // namespace file_systems
