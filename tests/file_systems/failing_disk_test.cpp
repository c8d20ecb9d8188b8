// SPDX-License-Identifier: MIT
// Tests a disk that accepts writes and fails only when they are flushed.
#include "tests/file_systems/failing_disk.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/stage.h"
#include "tests/support/program.h"

namespace file_systems {

namespace {

using Wrong = std::vector<std::string>;

TEST(FailingDisk, NeverReplacesAPictureWithOneThatItCannotStore) {
    faults::Stage stage(faults::RepairOverItself());
    const faults::Scratch backing;
    const FailingDisk disk(backing.path(), stage.Path("card"));
    if (!disk.obstacle().empty()) {
        GTEST_SKIP() << disk.obstacle();
    }
    stage.Restore();
    disk.Fill();
    const faults::Command run = stage.Run();
    constexpr int times = 3;  // the system forgets a failure after reporting it once
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
