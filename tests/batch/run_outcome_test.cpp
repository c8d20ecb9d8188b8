// SPDX-License-Identifier: MIT
#include "batch/run_outcome.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/batch/run_folders.h"
#include "tests/support/files.h"

namespace {

using Words = std::vector<std::string>;

class RunOutcomeTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_FALSE(ledger_.Open(run_.top / "ledger"));
        ASSERT_EQ(tally_.Open(run_.top / "report", "", "", false), "");
        support::WriteFile(run_.dng, "DNG");
        task_.input = run_.raw;
        task_.dng = run_.dng;
    }

    Record RecordOf(Verdict verdict, const std::string& made_with = "") const {
        Record record;
        record.verdict = verdict;
        record.dng = run_.dng;
        record.dng_state = FullStateText(run_.dng);
        record.fingerprint = "0123456789abcdef";
        record.made_with = made_with;
        record.text = verdict == Verdict::kFailed ? "it differs" : "";
        record.kind = record.text;
        return record;
    }

    /// The entry of a DNG that is known to be safe.
    void Remember(const std::string& source, const Words& options) {
        LedgerEntry entry = EntryOf(RecordOf(Verdict::kConverted), source, options);
        entry.on_disk = true;
        ASSERT_TRUE(ledger_.Add(run_.dng, entry));
    }

    RunOutcome Outcome() { return {run_.options, run_.trees, run_.pictures, plan_, ledger_, tally_}; }

    std::string Report() {
        EXPECT_TRUE(tally_.Close());
        return support::ReadText(run_.top / "report");
    }

    RunFolders run_;
    Plan plan_;
    Ledger ledger_;
    Tally tally_;
    Task task_;
};

TEST_F(RunOutcomeTest, APictureCountsWhenItsDngIsOnTheDisk) {
    run_.options.conversion = {"-l"};
    RunOutcome outcome = Outcome();
    EXPECT_TRUE(outcome.IsOpen(0));
    EXPECT_FALSE(outcome.IsOpen(1));
    outcome.Take(RecordOf(Verdict::kConverted), task_);
    EXPECT_FALSE(outcome.IsOpen(0));
    EXPECT_EQ(outcome.unreached(), 0U);
    EXPECT_EQ(tally_.converted(), 0U);
    EXPECT_FALSE(ledger_.Find(run_.dng)->on_disk);

    outcome.PutOnDisk();
    EXPECT_EQ(tally_.converted(), 1U);
    EXPECT_TRUE(ledger_.Find(run_.dng)->on_disk);
    EXPECT_EQ(ledger_.Find(run_.dng)->options, Words{"-l"});
    EXPECT_EQ(Report(), "converted: " + run_.raw + "\n");
}

TEST_F(RunOutcomeTest, ADngThatIsNotThereWhenItIsPutOnTheDiskHasFailed) {
    RunOutcome outcome = Outcome();
    outcome.Take(RecordOf(Verdict::kConverted), task_);
    std::filesystem::remove(run_.dng);
    outcome.PutOnDisk();
    EXPECT_EQ(tally_.converted(), 0U);
    EXPECT_EQ(tally_.failed(), 1U);
    EXPECT_FALSE(ledger_.Find(run_.dng).has_value());
    EXPECT_EQ(Report(), "failed: " + run_.raw +
                            ": the system could not write its DNG to the disk: No such file or directory\n");
}

TEST_F(RunOutcomeTest, AKnownDngWhoseComparisonFailedIsComparedAgain) {
    Remember(run_.raw, {"-b"});
    RunOutcome outcome = Outcome();
    outcome.Take(RecordOf(Verdict::kFailed), task_);
    EXPECT_EQ(outcome.failed(), 1U);
    EXPECT_EQ(tally_.failed(), 1U);
    ASSERT_TRUE(ledger_.Find(run_.dng).has_value());
    EXPECT_FALSE(ledger_.Find(run_.dng)->on_disk);
    EXPECT_EQ(ledger_.Find(run_.dng)->options, Words{"-b"});
}

TEST_F(RunOutcomeTest, AnUnknownDngIsRememberedIfItDiffers) {
    RunOutcome outcome = Outcome();
    outcome.Take(RecordOf(Verdict::kFailed, {kDiffers}), task_);
    ASSERT_TRUE(ledger_.Find(run_.dng).has_value());
    EXPECT_FALSE(ledger_.Find(run_.dng)->on_disk);
    EXPECT_EQ(ledger_.Find(run_.dng)->source, run_.raw);
    EXPECT_EQ(ledger_.Find(run_.dng)->options, UnknownOptions());
}

TEST_F(RunOutcomeTest, AFailureSaysNothingOfADngThatNobodyKnows) {
    RunOutcome outcome = Outcome();
    outcome.Take(RecordOf(Verdict::kFailed), task_);
    EXPECT_FALSE(ledger_.Find(run_.dng).has_value());
}

TEST_F(RunOutcomeTest, AnotherPicturesDngStaysAsItIsKnown) {
    Remember("/elsewhere/L1.RAW", {});
    RunOutcome outcome = Outcome();
    outcome.Take(RecordOf(Verdict::kFailed), task_);
    EXPECT_TRUE(ledger_.Find(run_.dng)->on_disk);
    EXPECT_EQ(ledger_.Find(run_.dng)->source, "/elsewhere/L1.RAW");
}

TEST_F(RunOutcomeTest, AKeptDngIsRememberedWithTheOptionsThatItWasMadeWith) {
    run_.options.conversion = {"-l"};
    task_.options = {"-b", "100"};
    const auto after = [&](const std::string& made_with) {
        Outcome().Take(RecordOf(Verdict::kKept, made_with), task_);
        return ledger_.Find(run_.dng)->options;
    };
    EXPECT_EQ(after({kAsSupposed}), (Words{"-b", "100"}));
    EXPECT_EQ(after(":-p -b 50 "), (Words{"-p", "-b", "50"}));
    EXPECT_EQ(after(""), (Words{"-p", "-b", "50"}));
    ASSERT_TRUE(ledger_.Remove(run_.dng));
    EXPECT_EQ(after(""), UnknownOptions());
}

TEST_F(RunOutcomeTest, WhatWasNotComparedHasNoFingerprint) {
    run_.options.no_verify = true;
    RunOutcome outcome = Outcome();
    outcome.Take(RecordOf(Verdict::kConverted), task_);
    EXPECT_EQ(ledger_.Find(run_.dng)->fingerprint, "");
}

TEST_F(RunOutcomeTest, APictureWhoseWorkerDiedHasFailed) {
    RunOutcome outcome = Outcome();
    outcome.TakeDead(0);
    EXPECT_FALSE(outcome.IsOpen(0));
    EXPECT_EQ(outcome.failed(), 1U);
    EXPECT_EQ(tally_.failures(),
              Words{run_.raw + ": the worker was killed or crashed while it was at work on this picture"});
}

TEST_F(RunOutcomeTest, ADngUnderAnotherNameIsTold) {
    Record record = RecordOf(Verdict::kConverted);
    record.dng = run_.top / "out/L1-2.DNG";
    support::WriteFile(record.dng, "DNG");
    RunOutcome outcome = Outcome();
    outcome.Take(record, task_);
    outcome.PutOnDisk();
    EXPECT_EQ(outcome.renamed(), Words{run_.raw + " -> L1-2.DNG"});
}

TEST_F(RunOutcomeTest, CheckSumsOfNewDngsComeIntoTheList) {
    Record record = RecordOf(Verdict::kConverted);
    record.sha256 = std::string(64, 'a');
    RunOutcome outcome = Outcome();
    outcome.Take(record, task_);
    outcome.PutOnDisk();
    EXPECT_TRUE(outcome.checksums().Write());
    EXPECT_EQ(support::ReadText(run_.top / "out/SHA256SUMS"), std::string(64, 'a') + "  L1.DNG\n");
}

TEST_F(RunOutcomeTest, AReplacedDngWithoutACheckSumLosesItsLine) {
    support::WriteFile(run_.top / "out/SHA256SUMS",
                       std::string(64, 'a') + "  L1.DNG\n" + std::string(64, 'b') + "  L2.DNG\n");
    RunOutcome outcome = Outcome();
    outcome.Take(RecordOf(Verdict::kConverted), task_);
    outcome.PutOnDisk();
    EXPECT_TRUE(outcome.checksums().Write());
    EXPECT_EQ(support::ReadText(run_.top / "out/SHA256SUMS"), std::string(64, 'b') + "  L2.DNG\n");
}

TEST_F(RunOutcomeTest, WhatThePlanKeepsCountsAtOnce) {
    plan_.kept = {0};
    plan_.flaws = {"cut"};
    plan_.sums = {""};
    RunOutcome outcome = Outcome();
    outcome.TakeKept();
    EXPECT_EQ(outcome.settled(), 1U);
    EXPECT_EQ(tally_.kept(), 1U);
    EXPECT_EQ(tally_.flaws(), Words{run_.raw + ": cut"});
}

}  // namespace
