// SPDX-License-Identifier: MIT
// A run on a FAT file system finds a part file that may in fact be a DNG, after a rename that was
// interrupted.
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/faulty_run.h"
#include "tests/faults/scenario.h"
#include "tests/faults/stage.h"
#include "tests/support/files.h"
#include "tests/support/traced_program.h"

namespace faults {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class StaleParts : public testing::Test {
  protected:
    void SetUp() override {
        const std::string obstacle = support::TracedProgram::Obstacle();
        if (!obstacle.empty()) {
            GTEST_SKIP() << obstacle;
        }
    }

    /// Runs the program in a folder with a part file and the DNG of another picture, which has the same size
    /// and is `older`. Returns the files that remain.
    static Names LeftOf(bool on_fat, std::chrono::seconds older) {
        const Stage stage(Repair());
        const std::string dng = stage.Path("out/other.DNG");
        const std::string part = stage.Path("out/" + PartOfEndedRun());
        support::WriteFile(dng, "a picture");
        support::WriteFile(part, "a picture");
        fs::last_write_time(dng, fs::last_write_time(part) - older);
        Command run = stage.Run();
        run.on_fat = on_fat;
        RunCleanly(run);
        Names names = support::Names(stage.Path("out"));
        for (std::string& name : names) {
            name = name.ends_with(".part") ? "part" : name;
        }
        return names;
    }
};

TEST_F(StaleParts, ThatMayBeADngAreKeptOnFat) {
    EXPECT_EQ(LeftOf(true, std::chrono::seconds(0)), (Names{"part", "L1000001.DNG", "other.DNG"}));
}

TEST_F(StaleParts, WithAnotherTimeAreRemoved) {
    EXPECT_EQ(LeftOf(true, std::chrono::seconds(2)), (Names{"L1000001.DNG", "other.DNG"}));
}

TEST_F(StaleParts, AreRemovedOnFileSystemsWithAJournal) {
    EXPECT_EQ(LeftOf(false, std::chrono::seconds(0)), (Names{"L1000001.DNG", "other.DNG"}));
}

}  // namespace

}  // namespace faults
