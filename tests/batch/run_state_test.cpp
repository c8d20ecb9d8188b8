// SPDX-License-Identifier: MIT
#include "batch/run_state.h"

#include <filesystem>
#include <string>
#include <unordered_set>

#include <gtest/gtest.h>

#include "batch/fields.h"
#include "batch/jobs.h"
#include "batch/records.h"
#include "tests/batch/run_folders.h"
#include "tests/support/files.h"

namespace {

using Names = std::unordered_set<std::string>;

/// Runs one after the other into the same output. Each ends its own as the test has it.
class RunStateTest : public testing::Test {
  protected:
    void Begin(RunState& state) {
        ASSERT_EQ(state.Open(run_.options, run_.trees), "");
        ASSERT_EQ(state.Begin(run_.options, run_.trees), "");
    }

    /// A run with -r that makes the DNG of L1 anew and is interrupted.
    void InterruptRefresh() {
        run_.options.conversion = {"-r"};
        RunState state;
        Begin(state);
        support::WriteFile(run_.dng, "DNG");
        Task task;
        task.input = run_.raw;
        task.dng = run_.dng;
        ASSERT_FALSE(jobs::Write(jobs::FileOf(state.folder(), 1), {task}));
        Record record;
        record.verdict = Verdict::kConverted;
        record.dng = run_.dng;
        record.dng_state = FullStateText(run_.dng);
        ASSERT_FALSE(fields::WritePlain(jobs::RecordsOf(state.folder(), 1), RecordBytes(record)));
    }

    RunFolders run_;
};

TEST_F(RunStateTest, TheSameCommandGoesOnWithAnInterruptedRefresh) {
    InterruptRefresh();
    RunState state;
    Begin(state);
    EXPECT_EQ(state.refreshed(), Names{run_.dng});
    EXPECT_TRUE(state.interrupted_since().has_value());
    const auto entry = state.ledger().Find(run_.dng);
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->source, run_.raw);
    EXPECT_FALSE(entry->on_disk);
}

TEST_F(RunStateTest, AnInterruptedRefreshIsRememberedOverASecondInterruption) {
    InterruptRefresh();
    {
        RunState state;
        Begin(state);
    }
    RunState state;
    Begin(state);
    EXPECT_EQ(state.refreshed(), Names{run_.dng});
}

TEST_F(RunStateTest, AnotherCommandBeginsAnew) {
    InterruptRefresh();
    run_.options.conversion = {"-r", "-l"};
    RunState state;
    Begin(state);
    EXPECT_EQ(state.refreshed(), Names());
    EXPECT_TRUE(state.interrupted_since().has_value());
}

TEST_F(RunStateTest, FreshBeginsAnew) {
    InterruptRefresh();
    run_.options.fresh = true;
    RunState state;
    Begin(state);
    EXPECT_EQ(state.refreshed(), Names());
}

TEST_F(RunStateTest, ARunThatCameToItsEndLeavesNothingToGoOnWith) {
    InterruptRefresh();
    {
        RunState state;
        Begin(state);
        state.End();
    }
    RunState state;
    Begin(state);
    EXPECT_EQ(state.refreshed(), Names());
    EXPECT_FALSE(state.interrupted_since().has_value());
}

TEST_F(RunStateTest, AVerificationLeavesAnInterruptedRefreshForTheNextRun) {
    InterruptRefresh();
    run_.options.verify = true;
    run_.options.conversion = {};
    {
        RunState state;
        Begin(state);
        state.End();
    }
    run_.options.verify = false;
    run_.options.conversion = {"-r"};
    RunState state;
    Begin(state);
    EXPECT_EQ(state.refreshed(), Names{run_.dng});
}

TEST_F(RunStateTest, OnlyItsUserMayEnterTheFolder) {
    RunState state;
    Begin(state);
    EXPECT_EQ(std::filesystem::status(state.folder()).permissions(), std::filesystem::perms::owner_all);
}

}  // namespace
