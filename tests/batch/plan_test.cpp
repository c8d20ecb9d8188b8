// SPDX-License-Identifier: MIT
#include "batch/plan.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "batch/ledger.h"
#include "batch/records.h"
#include "tests/batch/run_folders.h"
#include "tests/support/files.h"

namespace {

using Numbers = std::vector<std::uint64_t>;
using Words = std::vector<std::string>;

/// A run that has begun, in whose output may be a DNG that the ledger may know.
class PlanTest : public testing::Test {
  protected:
    void Begin() {
        ASSERT_EQ(state_.Open(run_.options, run_.trees), "");
        ASSERT_EQ(state_.Begin(run_.options, run_.trees), "");
    }

    /// Of the DNG as it is now.
    LedgerEntry EntryNow() const {
        Record record;
        record.dng = run_.dng;
        record.raw_state = StateText(run_.raw);
        record.jpg_state = StateText(run_.top / "in/L1.JPG");
        record.dng_state = FullStateText(run_.dng);
        record.fingerprint = "0123456789abcdef";
        LedgerEntry entry = EntryOf(record, run_.raw, {});
        entry.on_disk = true;
        return entry;
    }

    /// The plan of a run in whose output a DNG is that the ledger knows as `entry`.
    Plan PlanWith(const LedgerEntry& entry) {
        EXPECT_TRUE(state_.ledger().Add(run_.dng, entry));
        return Make();
    }

    Plan Make() { return MakePlan(run_.options, run_.trees, run_.pictures, state_, state_.ledger()); }

    RunFolders run_;
    RunState state_;
};

/// Expects a single task, in this mode.
void ExpectTask(const Plan& plan, TaskMode mode) {
    EXPECT_EQ(plan.kept, Numbers());
    ASSERT_EQ(plan.tasks.size(), 1U);
    EXPECT_EQ(plan.tasks.front().mode, mode);
}

TEST_F(PlanTest, WhatHasNoDngIsConverted) {
    Begin();
    const Plan plan = Make();
    ExpectTask(plan, TaskMode::kConvert);
    EXPECT_EQ(plan.tasks.front().input, run_.raw);
    EXPECT_EQ(plan.tasks.front().dng, run_.dng);
    EXPECT_EQ(plan.to_make, 1U);
}

TEST_F(PlanTest, AKnownDngThatNobodyTouchedIsKept) {
    Begin();
    support::WriteFile(run_.dng, "DNG");
    LedgerEntry entry = EntryNow();
    entry.flaws = "cut";
    const Plan plan = PlanWith(entry);
    EXPECT_EQ(plan.kept, Numbers{0});
    EXPECT_EQ(plan.flaws, Words{"cut"});
    EXPECT_TRUE(plan.tasks.empty());
}

TEST_F(PlanTest, AnythingThatChangedOfTheDngHasItCompared) {
    Begin();
    support::WriteFile(run_.dng, "DNG");
    const LedgerEntry now = EntryNow();
    for (std::size_t i = 0; i < now.dng_state.size(); ++i) {
        LedgerEntry entry = now;
        if (entry.dng_state[i] != ' ') {
            entry.dng_state[i] = entry.dng_state[i] == '0' ? '1' : '0';
            ExpectTask(PlanWith(entry), TaskMode::kProve);
        }
    }
}

TEST_F(PlanTest, ANewerInputHasTheDngCompared) {
    Begin();
    support::WriteFile(run_.dng, "DNG");
    const LedgerEntry entry = EntryNow();
    support::WriteFile(run_.top / "in/L1.BIA", "dark");
    ExpectTask(PlanWith(entry), TaskMode::kProve);
    std::filesystem::remove(run_.top / "in/L1.BIA");
    support::WriteFile(run_.raw, "longer RAW");
    ExpectTask(PlanWith(entry), TaskMode::kProve);
}

TEST_F(PlanTest, ADngThatMayNotBeOnTheDiskIsCompared) {
    Begin();
    support::WriteFile(run_.dng, "DNG");
    LedgerEntry entry = EntryNow();
    entry.on_disk = false;
    ExpectTask(PlanWith(entry), TaskMode::kProve);
}

TEST_F(PlanTest, ADngThatWasNeverComparedIsCompared) {
    Begin();
    support::WriteFile(run_.dng, "DNG");
    LedgerEntry entry = EntryNow();
    entry.fingerprint.clear();
    ExpectTask(PlanWith(entry), TaskMode::kProve);
    run_.options.no_verify = true;
    EXPECT_EQ(Make().kept, Numbers{0});
}

TEST_F(PlanTest, ADngThatTheLedgerDoesNotKnowIsCompared) {
    Begin();
    support::WriteFile(run_.dng, "DNG");
    const Plan plan = Make();
    ExpectTask(plan, TaskMode::kProve);
    EXPECT_FALSE(plan.tasks.front().options_known);
}

TEST_F(PlanTest, WithoutComparisonsAnUnknownDngIsOnlyCheckedUnlessAnInputIsNewer) {
    Begin();
    run_.options.no_verify = true;
    support::WriteFile(run_.dng, "DNG");
    ExpectTask(Make(), TaskMode::kCheck);
    constexpr auto later = std::chrono::hours(1);
    std::filesystem::last_write_time(run_.raw, std::filesystem::last_write_time(run_.dng) + later);
    ExpectTask(Make(), TaskMode::kProve);
}

TEST_F(PlanTest, AVerificationComparesEveryDngWithWhatItIsKnownToBeMadeWith) {
    Begin();
    run_.options.verify = true;
    run_.options.conversion = {"-b"};
    support::WriteFile(run_.dng, "DNG");
    LedgerEntry entry = EntryNow();
    entry.options = {"-s"};
    const Plan plan = PlanWith(entry);
    ExpectTask(plan, TaskMode::kVerify);
    EXPECT_EQ(plan.tasks.front().options, Words{"-s"});
    EXPECT_TRUE(plan.tasks.front().options_known);
}

TEST_F(PlanTest, ARefreshConvertsWhatIsThere) {
    run_.options.conversion = {"-r"};
    Begin();
    support::WriteFile(run_.dng, "DNG");
    const Plan plan = PlanWith(EntryNow());
    ExpectTask(plan, TaskMode::kConvert);
    EXPECT_EQ(plan.to_make, 1U);
}

TEST_F(PlanTest, DngsMadeWithOtherOptionsAreCounted) {
    Begin();
    run_.options.conversion = {"-b", "100"};
    support::WriteFile(run_.dng, "DNG");
    LedgerEntry entry = EntryNow();
    entry.options = {"-l"};
    const Plan plan = PlanWith(entry);
    EXPECT_EQ(plan.other_options, 1U);
    EXPECT_EQ(plan.options_of_others, "-l");
}

}  // namespace
