// SPDX-License-Identifier: MIT
// Makes every file call of a run fail in every possible way: once, from then on, or by killing the run.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/fault.h"
#include "tests/faults/faulty_run.h"
#include "tests/faults/stage.h"
#include "tests/support/traced_program.h"

namespace faults {

namespace {

/// Only every n-th call is swept under sanitizers, because they are slow.
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kStep = 5;
#else
constexpr std::size_t kStep = 1;
#endif

class Sweep : public testing::TestWithParam<ScenarioMaker> {
  protected:
    void SetUp() override {
        const std::string obstacle = support::TracedProgram::Obstacle();
        if (!obstacle.empty()) {
            GTEST_SKIP() << obstacle;
        }
        stage_.emplace(GetParam().make());
        const CleanRun clean = RunCleanly(stage_->Run());
        calls_ = clean.calls;
        ASSERT_GE(calls_.size(), 20U);
        ASSERT_EQ(stage_->Violations({clean.outcome}), std::vector<std::string>());
        ASSERT_TRUE(stage_->Finished());
        stage_->Restore();
        first_ = stage_->scenario().reading_is_swept ? 0 : FirstAfterReading(calls_);
    }

    /// Makes each call fail in each possible way.
    void FailEach(bool repeated) {
        for (std::size_t i = first_; i < calls_.size(); i += kStep) {
            for (const Fault& fault : FaultsOf(calls_[i].kind)) {
                const FaultyOutcome run = RunWithFaults(stage_->Run(), {i, fault, repeated});
                faults_ += run.injected;
                EXPECT_GE(run.injected, 1);
                Check({run.outcome, false, run.printing_failed, run.part_abandoned},
                      fault.Name() + (repeated ? " from call " : " at call "), i);
            }
        }
        // A fault after the last call has no call to hit.
        EXPECT_EQ(RunWithFaults(stage_->Run(), {calls_.size(), {}, repeated}).injected, 0);
    }

    void KillAtEach() {
        for (std::size_t i = first_; i < calls_.size(); i += kStep) {
            Kill(i, false);
            if (calls_[i].kind == IoKind::kWrite) {
                Kill(i, true);
            }
        }
        EXPECT_FALSE(RunUntilKill(stage_->Run(), calls_.size(), false));
    }

    void TearDown() override {
        if (!stage_) {
            return;
        }
        std::printf("%s: %zu calls swept, %d faults injected, %d kills, %d violations\n", GetParam().name,
                    calls_.size() - first_, faults_, kills_, violations_);
        RecordProperty("calls", static_cast<int>(calls_.size() - first_));
        RecordProperty("faults", faults_);
        RecordProperty("kills", kills_);
        RecordProperty("violations", violations_);
    }

  private:
    void Kill(std::size_t call, bool half) {
        EXPECT_TRUE(RunUntilKill(stage_->Run(), call, half));
        ++kills_;
        Check({.outcome = {}, .killed = true}, half ? "killed half-way through call " : "killed at call ",
              call);
    }

    void Check(const RunEnd& end, const std::string& what, std::size_t call) {
        for (const std::string& violation : stage_->Violations(end)) {
            ++violations_;
            ADD_FAILURE() << what << call << ", " << calls_[call].description << ": " << violation;
        }
        stage_->Restore();
    }

    std::optional<Stage> stage_;
    std::vector<IoCall> calls_;
    std::size_t first_ = 0;  ///< first call that is swept
    int faults_ = 0;
    int kills_ = 0;
    int violations_ = 0;
};

TEST_P(Sweep, OneCallFails) {
    FailEach(false);
}

TEST_P(Sweep, ACallAndAllLaterOnesOfItsKindFail) {
    FailEach(true);
}

TEST_P(Sweep, TheRunIsKilled) {
    KillAtEach();
}

INSTANTIATE_TEST_SUITE_P(Faults, Sweep,
                         testing::Values(kConversion, kConversionWithDarkFrame, kConversionOfConverted,
                                         kSensorFix, kDarkReference, kRepair, kRepairAfterKill,
                                         kRepairOverItself, kRepairOnFat, kDarkReferenceOnFat),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace

}  // namespace faults
