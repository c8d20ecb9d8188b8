// SPDX-License-Identifier: MIT
// A folder of a run is replaced by a link to another folder: the run stays in the folders that it was given.
#include <sys/syscall.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/test_pair.h"
#include "tests/support/traced_program.h"

#if defined(SYS_landlock_restrict_self)

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// Folders "in" with a pair A, "out", and "elsewhere" with another pair A.
class SwappedFolder : public testing::Test {
  protected:
    void SetUp() override {
        const std::string obstacle = support::TracedProgram::Obstacle();
        if (!obstacle.empty()) {
            GTEST_SKIP() << obstacle;
        }
        constexpr unsigned int ask_version = 1;
        if (!VELMARCON_HAS_SANDBOX || ::syscall(SYS_landlock_create_ruleset, nullptr, 0, ask_version) < 1) {
            GTEST_SKIP() << "this kernel or this build has no Landlock";
        }
        for (const char* name : {"in", "out", "elsewhere"}) {
            fs::create_directory(folder_ / name);
        }
        support::WritePair(folder_ / "in/", "A");
        support::WritePair(folder_ / "elsewhere/", "A");
    }

    /// Starts a run and, once it is confined, replaces its folder `name` by a link to "elsewhere". Returns
    /// what the run prints.
    std::string RunAndSwap(const std::string& name) const {
        support::TracedProgram program(VELMARCON_PROGRAM, {"-i", "in", "-o", "out"},
                                       {.folder = folder_.path().string()});
        std::optional<support::SystemCall> call;
        do {
            call = program.NextCall();
        } while (call && call->number != SYS_landlock_restrict_self);
        EXPECT_TRUE(call.has_value()) << "the run was never confined";
        if (call) {
            program.FinishCall();
        }
        fs::rename(folder_ / name, folder_ / "before");
        fs::create_directory_symlink("elsewhere", folder_ / name);
        program.Finish();
        EXPECT_EQ(program.outcome().status, 0);
        return program.outcome().output;
    }

    support::TempFolder folder_;
};

TEST_F(SwappedFolder, OutputFolderIsNotWritten) {
    EXPECT_EQ(RunAndSwap("out"), "\nImage: A.RAW\n\nout/A.DNG: DNG not written: Permission denied\n");
    EXPECT_EQ(support::Names(folder_ / "elsewhere"), (Names{"A.JPG", "A.RAW"}));
    EXPECT_EQ(support::Names(folder_ / "before"), Names());
}

TEST_F(SwappedFolder, InputFolderIsNotRead) {
    EXPECT_EQ(RunAndSwap("in"), "\nImage: A.RAW\n\nA.JPG: Error #0010: Unable to find JPG file.\n");
    EXPECT_EQ(support::Names(folder_ / "out"), Names());
}

}  // namespace

#endif
