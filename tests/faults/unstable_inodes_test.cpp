// SPDX-License-Identifier: MIT
// A file system that reports another inode number for a file at every query, as some FUSE file systems do.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/faulty_run.h"
#include "tests/faults/stage.h"
#include "tests/support/traced_program.h"

namespace faults {

namespace {

class UnstableInodes : public testing::TestWithParam<ScenarioMaker> {};

TEST_P(UnstableInodes, DoNotPreventRenamesAndLeaveNothingBehind) {
    const std::string obstacle = support::TracedProgram::Obstacle();
    if (!obstacle.empty()) {
        GTEST_SKIP() << obstacle;
    }
    Stage stage(GetParam().make());
    Command run = stage.Run();
    run.renumbers = true;
    const auto outcome = RunCleanly(run).outcome;
    EXPECT_EQ(stage.Violations({outcome}), std::vector<std::string>());
    EXPECT_TRUE(stage.Finished()) << outcome.output;
}

INSTANTIATE_TEST_SUITE_P(Faults, UnstableInodes,
                         testing::Values(kConversion, kDarkReference, kRepairAfterKill, kRepairOverItself),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace

}  // namespace faults
