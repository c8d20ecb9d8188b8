// SPDX-License-Identifier: MIT
// During a run, at any moment, the output folder or an input vanishes, or an input becomes shorter.
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/faults/faulty_run.h"
#include "tests/faults/stage.h"
#include "tests/support/files.h"
#include "tests/support/traced_program.h"

namespace faults {

namespace {

namespace fs = std::filesystem;

class Vanishing : public testing::TestWithParam<ScenarioMaker> {
  protected:
    void SetUp() override {
        const std::string obstacle = support::TracedProgram::Obstacle();
        if (!obstacle.empty()) {
            GTEST_SKIP() << obstacle;
        }
        calls_ = RunCleanly(stage_.Run()).calls;
        stage_.Restore();
    }

    /// Runs the program once for each of its calls, with `harm` before that call, and calls `repair` after
    /// the run, before the files are checked.
    void HarmAtEach(const std::function<void()>& harm, const std::function<void()>& repair) {
#if defined(__SANITIZE_ADDRESS__)
        constexpr std::size_t step = 11;
#else
        constexpr std::size_t step = 1;
#endif
        int violations = 0;
        int runs = 0;
        for (std::size_t i = 0; i<calls_.size(); i += calls_.size()> most_calls_ ? 7 : step) {
            IoRun run(stage_.Run());
            for (std::size_t call = 0; call <= i; ++call) {
                run.NextCall();
            }
            const bool made = stage_.IsMade(stage_.scenario().targets.front());
            harm();
            run.program().Finish();
            repair();
            for (const std::string& wrong : stage_.Violations(
                     {.outcome = run.program().outcome(), .silent = made, .may_leave_part = false})) {
                ++violations;
                ADD_FAILURE() << "at call " << i << ", " << calls_[i].description << ": " << wrong;
            }
            stage_.Restore();
            ++runs;
        }
        std::printf("%s: %d runs harmed, %d violations\n", GetParam().name, runs, violations);
        RecordProperty("runs", runs);
        RecordProperty("violations", violations);
    }

    Stage stage_ = Stage(GetParam().make());
    std::vector<IoCall> calls_;

    static constexpr std::size_t most_calls_ = 100;
};

TEST_P(Vanishing, TheOutputFolder) {
    const std::string folder = stage_.Path("out");
    HarmAtEach([&] { fs::remove_all(folder); }, [&] { fs::create_directory(folder); });
}

TEST_P(Vanishing, TheFreeNameOfTheDng) {
    const std::string dng = stage_.Path(stage_.scenario().targets.front());
    for (std::size_t i = 0; i<calls_.size(); i += calls_.size()> most_calls_ ? 7U : 1U) {
        IoRun run(stage_.Run());
        for (std::size_t call = 0; call <= i; ++call) {
            run.NextCall();
        }
        const bool free = !fs::exists(dng);
        if (free) {
            support::WriteFile(dng, "theirs");
        }
        run.Finish();
        const auto outcome = run.program().outcome();
        if (free) {
            EXPECT_EQ(support::ReadText(dng), "theirs") << calls_[i].description;
            EXPECT_NE(outcome.output.find("L1000001.DNG"), std::string::npos) << calls_[i].description;
            EXPECT_NE(outcome.output.find(" exists"), std::string::npos) << calls_[i].description;
        }
        EXPECT_EQ(support::Names(stage_.Path("out")), std::vector<std::string>{"L1000001.DNG"});
        stage_.Restore();
    }
}

TEST_P(Vanishing, AnInput) {
    for (const File& input : stage_.scenario().inputs) {
        HarmAtEach([&] { fs::remove(stage_.Path(input.path)); }, [&] { stage_.RestoreInput(input.path); });
    }
}

/// Nobody ever writes to the pipe.
TEST_P(Vanishing, AnInputReplacedByAPipe) {
    for (const File& input : stage_.scenario().inputs) {
        const std::string path = stage_.Path(input.path);
        HarmAtEach(
            [&] {
                fs::remove(path);
                ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
            },
            [&] { stage_.RestoreInput(input.path); });
    }
}

TEST_P(Vanishing, TheLastTwoThirdsOfAnImage) {
    for (const File& input : stage_.scenario().inputs) {
        if (input.path.starts_with("card/")) {
            HarmAtEach([&] { fs::resize_file(stage_.Path(input.path), input.bytes.size() / 3); },
                       [&] { stage_.RestoreInput(input.path); });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, Vanishing, testing::Values(kConversion, kRepair),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace

}  // namespace faults
