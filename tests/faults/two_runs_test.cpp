// SPDX-License-Identifier: MIT
// Two simultaneous runs in the same folders.
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/faulty_run.h"
#include "tests/faults/stage.h"
#include "tests/support/traced_program.h"

namespace faults {

namespace {

class TwoRuns : public testing::TestWithParam<ScenarioMaker> {
  protected:
    void SetUp() override {
        const std::string obstacle = support::TracedProgram::Obstacle();
        if (!obstacle.empty()) {
            GTEST_SKIP() << obstacle;
        }
        calls_ = RunCleanly(stage_.Run()).calls;
        stage_.Restore();
    }

    /// Whether to stop runs at call `i`. Reads are left out, because they cannot conflict.
    bool IsTried(std::size_t i) const {
#if defined(__SANITIZE_ADDRESS__)
        constexpr std::size_t step = 9;
#else
        constexpr std::size_t step = 1;
#endif
        return calls_[i].kind != IoKind::kRead && calls_[i].kind != IoKind::kSeek && i % step == 0;
    }

    static void RunTo(IoRun& run, std::size_t call) {
        for (std::size_t i = 0; i <= call; ++i) {
            run.NextCall();
        }
    }

    void Check(const IoRun& run, const std::string& which, std::size_t call) {
        for (const std::string& wrong : stage_.Violations({run.program().outcome()})) {
            ++violations_;
            ADD_FAILURE() << which << " at call " << call << ", " << calls_[call].description << ": "
                          << wrong;
        }
    }

    void Judge(const IoRun& first, const IoRun& second, std::size_t call) {
        ++pairs_;
        if (!stage_.Finished()) {
            ++violations_;
            ADD_FAILURE() << "at call " << call << ", " << calls_[call].description
                          << ": a file is missing or was left behind\n"
                          << first.program().outcome().output << second.program().outcome().output;
        }
        Check(first, "the first", call);
        Check(second, "the second", call);
        stage_.Restore();
    }

    void TearDown() override {
        std::printf("%s: %d pairs of runs, %d violations\n", GetParam().name, pairs_, violations_);
        RecordProperty("pairs", pairs_);
        RecordProperty("violations", violations_);
    }

    Stage stage_ = Stage(GetParam().make());
    std::vector<IoCall> calls_;

  private:
    int pairs_ = 0;
    int violations_ = 0;
};

TEST_P(TwoRuns, TheSecondRunsToItsEndWhileTheFirstWaits) {
    for (std::size_t i = 0; i < calls_.size(); ++i) {
        if (IsTried(i)) {
            IoRun first(stage_.Run());
            RunTo(first, i);
            IoRun second(stage_.Run());
            second.Finish();
            first.Finish();
            Judge(first, second, i);
        }
    }
}

TEST_P(TwoRuns, BothWaitAtTheSameCall) {
    for (std::size_t i = 0; i < calls_.size(); ++i) {
        if (IsTried(i)) {
            IoRun first(stage_.Run());
            IoRun second(stage_.Run());
            RunTo(first, i);
            RunTo(second, i);
            first.Finish();
            second.Finish();
            Judge(first, second, i);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, TwoRuns,
                         testing::Values(kConversion, kDarkReference, kRepair, kRepairOverItself),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace

}  // namespace faults
