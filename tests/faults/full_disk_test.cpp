// SPDX-License-Identifier: MIT
// Output folders that are full or cannot be written.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/small_mount.h"
#include "tests/faults/stage.h"
#include "tests/support/program.h"

namespace faults {

namespace {

using Wrong = std::vector<std::string>;

class FullDisk : public testing::TestWithParam<ScenarioMaker> {
  protected:
    /// Runs the program with an obstacle in place. Returns the violations.
    Wrong Run(std::uint64_t largest_file = 0) {
        const Command run = stage_.Run();
        const auto outcome =
            support::RunProgram(VELMARCON_PROGRAM, run.arguments,
                                {.folder = run.folder, .name = run.name, .largest_file = largest_file});
        return stage_.Violations({.outcome = outcome, .obstacle_lasts = true});
    }

    Stage stage_ = Stage(GetParam().make());
};

TEST_P(FullDisk, NoFileMayGrowBeyondALimit) {
    for (const std::uint64_t limit : {4096U, 100000U, 200000U, 10000000U}) {
        EXPECT_EQ(Run(limit), Wrong()) << limit;
        stage_.Restore();
    }
    EXPECT_EQ(Run(), Wrong());
    EXPECT_TRUE(stage_.Finished());
}

TEST_P(FullDisk, TheOutputFolderIsFull) {
    for (const std::string size : {"8k", "100k", "1m", "20m"}) {
        const SmallMount mount(stage_.Path("out"), size);
        if (!mount.mounted()) {
            GTEST_SKIP() << "this system does not allow mounting";
        }
        stage_.Restore();
        EXPECT_EQ(Run(), Wrong()) << size;
        EXPECT_EQ(stage_.IsMade("out/L1000001.DNG"),
                  std::string(GetParam().name) == "Repair" && size.ends_with("m"))
            << size;
    }
}

TEST_P(FullDisk, TheOutputFolderCannotBeWritten) {
    if (::geteuid() != 0) {
        ASSERT_EQ(::chmod(stage_.Path("out").c_str(), 0555), 0);
        EXPECT_EQ(Run(), Wrong());
        ASSERT_EQ(::chmod(stage_.Path("out").c_str(), 0755), 0);
        return;
    }
    const SmallMount mount(stage_.Path("out"), "1m");
    if (!mount.mounted()) {
        GTEST_SKIP() << "root may write everywhere, and this system does not allow mounting";
    }
    stage_.Restore();
    ASSERT_TRUE(mount.MakeReadOnly());
    EXPECT_EQ(Run(), Wrong());
    EXPECT_EQ(stage_.IsMade("out/L1000001.DNG"), false);
    ASSERT_TRUE(mount.MakeWritable());
}

INSTANTIATE_TEST_SUITE_P(Faults, FullDisk, testing::Values(kConversion, kSensorFix, kDarkReference, kRepair),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace

}  // namespace faults
