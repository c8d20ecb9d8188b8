// SPDX-License-Identifier: MIT
// Kills a repair that replaces its input: afterwards the file is either the old or the new one.
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/killed_program.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tests/support/program.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

const std::vector<std::string> kOverItself = {"-i", "L1000001.DNG", "-r"};

/// A folder with one camera DNG.
class Killed : public testing::Test {
  protected:
    std::string Path() const { return folder_ / "L1000001.DNG"; }

    /// Makes `camera` the file, and records its repaired version.
    void Prepare(const Bytes& camera) {
        camera_ = camera;
        support::WriteFile(Path(), camera_);
        ASSERT_EQ(support::RunProgram(VELMARCON_PROGRAM, kOverItself, {.folder = folder()}).status, 0);
        repaired_ = support::ReadFile(Path());
        ASSERT_FALSE(repaired_ == camera_);
        Restore();
    }

    void Restore() const {
        std::filesystem::remove(Path());
        support::WriteFile(Path(), camera_);
    }

    std::string folder() const { return folder_.path().string(); }
    end_to_end::KilledProgram Repair() const { return {VELMARCON_PROGRAM, kOverItself, folder()}; }

    /// Whether the file is the repaired one; the test fails if it is neither the old nor the repaired one.
    bool IsRepaired() const {
        const Bytes now = support::ReadFile(Path());
        EXPECT_TRUE(now == camera_ || now == repaired_) << now.size() << " bytes";
        return now == repaired_;
    }

  private:
    support::TempFolder folder_;
    Bytes camera_;
    Bytes repaired_;
};

TEST_F(Killed, AtAnySystemCallLeavesTheOldOrTheNewFile) {
    Prepare(samples::Serialize(support::SmallCameraDng(64, 48)));
    int old_files = 0;
    int new_files = 0;
    int stop = 1;
    while (Repair().RunUntilSystemCall(stop)) {
        if (IsRepaired()) {
            ++new_files;
            Restore();
        } else {
            ++old_files;
        }
        ASSERT_FALSE(HasFailure()) << "killed at stop " << stop;
        ++stop;
    }
    EXPECT_TRUE(IsRepaired());
    EXPECT_GE(old_files, 50);
    EXPECT_GE(new_files, 1);
    // The last run, which was not killed, cleaned up after the others.
    EXPECT_EQ(support::Names(folder()), std::vector<std::string>{"L1000001.DNG"});
}

/// This also kills within system calls: those that move a full-size image take long enough.
TEST_F(Killed, AfterAnyTimeLeavesTheOldOrTheNewFile) {
    Prepare(samples::Serialize(support::FullCameraDng()));
    constexpr std::chrono::microseconds step(700);
    bool killed = true;
    for (int i = 1; i <= 60 && killed; ++i) {
        killed = Repair().RunFor(i * step);
        if (IsRepaired()) {
            Restore();
        }
        ASSERT_FALSE(HasFailure()) << "killed after " << i << " steps";
    }
}

}  // namespace
