// SPDX-License-Identifier: MIT
// Makes every file call with which velmarcon-calibrate writes its database fail in every possible way: once,
// from then on, or by killing the run. The same for some of the calls with which it reads.
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"
#include "samples/simulated_sensor.h"
#include "tests/faults/fault.h"
#include "tests/faults/faulty_run.h"
#include "tests/faults/stage.h"
#include "tests/support/files.h"
#include "tests/support/traced_program.h"

namespace faults {

namespace {

namespace fs = std::filesystem;

constexpr const char* kOld = "; mine\n[7]\nLine = 1\n";
constexpr const char* kDatabase = "out/sensdb.ini";
constexpr const char* kKept = "out/sensdb.ini.1";

/// Most calls are reads, and all of them are alike.
constexpr std::size_t kReadingStep = 23;
#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kWritingStep = 4;
#else
constexpr std::size_t kWritingStep = 1;
#endif

class CalibrateSweep : public testing::Test {
  protected:
    void SetUp() override {
        const std::string obstacle = support::TracedProgram::Obstacle();
        if (!obstacle.empty()) {
            GTEST_SKIP() << obstacle;
        }
        MakeExposure();
        Restore();
        const CleanRun clean = RunCleanly(run_);
        calls_ = clean.calls;
        ASSERT_EQ(clean.outcome.status, 0) << clean.outcome.output;
        made_ = Text(kDatabase);
        ASSERT_NE(made_, kOld);
        ASSERT_EQ(Text(kKept), kOld);
        for (std::size_t i = 0; i < calls_.size();) {
            swept_.push_back(i);
            i += i < FirstAfterReading(calls_) ? kReadingStep : kWritingStep;
        }
        ASSERT_GE(swept_.size(), 10U);
    }

    void FailEach(bool repeated) {
        for (const std::size_t i : swept_) {
            for (const Fault& fault : FaultsOf(calls_[i].kind)) {
                Restore();
                const FaultyOutcome run = RunWithFaults(run_, {i, fault, repeated});
                EXPECT_GE(run.injected, 1);
                const RunEnd end = {run.outcome, false, run.printing_failed, run.part_abandoned};
                Judge(end, fault.Name() + (repeated ? " from call " : " at call ") + std::to_string(i) +
                               ", " + calls_[i].description);
            }
        }
    }

    void KillAtEach() {
        for (const std::size_t i : swept_) {
            Restore();
            EXPECT_TRUE(RunUntilKill(run_, i, false));
            Judge({.outcome = {}, .killed = true},
                  "killed at call " + std::to_string(i) + ", " + calls_[i].description);
        }
    }

    void TearDown() override {
        std::printf("CalibrateSweep: %zu calls swept, %d runs, %d violations\n", swept_.size(), runs_,
                    violations_);
    }

  private:
    std::string Path(const std::string& file) const { return (scratch_.path() / file).string(); }
    std::string Text(const std::string& file) const { return support::ReadText(Path(file)); }

    void MakeExposure() {
        fs::create_directory(Path("card"));
        fs::create_directory(Path("out"));
        const samples::SimulatedSensor sensor;
        inputs_["card/dark.JPG"] = samples::CameraJpeg(samples::CameraExif({}));
        inputs_["card/dark.RAW"] =
            samples::DumpBytes(samples::WordsOfPixels(samples::ExposePixels(sensor, {.seed = 1})));
        for (const auto& [file, bytes] : inputs_) {
            support::WriteFile(Path(file), bytes);
        }
        run_ = {.arguments = {"--database", "../out/sensdb.ini", "dark"},
                .folder = Path("card"),
                .name = "velmarcon-calibrate",
                .watched = "dark",
                .program = VELMARCON_CALIBRATE};
    }

    void Restore() const {
        for (const auto& entry : fs::directory_iterator(Path("out"))) {
            fs::remove(entry.path());
        }
        support::WriteFile(Path(kDatabase), kOld);
    }

    void Judge(const RunEnd& end, const std::string& what) {
        ++runs_;
        const std::vector<std::string> wrong = Violations(end);
        violations_ += static_cast<int>(wrong.size());
        for (const std::string& violation : wrong) {
            ADD_FAILURE() << what << ": " << violation;
        }
    }

    std::vector<std::string> Violations(const RunEnd& end) const {
        std::vector<std::string> wrong;
        const std::string now = Text(kDatabase);
        const bool is_made = now == made_;
        if (!is_made && now != kOld) {
            wrong.emplace_back("the database is neither the old one nor a complete new one");
        }
        if (is_made && Text(kKept) != kOld) {
            wrong.emplace_back("the old database is lost");
        }
        if (fs::exists(Path(kKept)) && Text(kKept) != kOld) {
            wrong.emplace_back("the copy of the old database is incomplete");
        }
        const std::string& printed = end.outcome.output;
        if (!end.killed && !is_made && (end.outcome.status != 1 || (!end.silent && printed.empty()))) {
            wrong.push_back("nothing was written, and the status is " + std::to_string(end.outcome.status) +
                            ":\n" + printed + end.outcome.errors);
        }
        AddLeftFiles(end, wrong);
        for (const auto& [file, bytes] : inputs_) {
            if (support::ReadFile(Path(file)) != bytes) {
                wrong.push_back(file + " was changed");
            }
        }
        return wrong;
    }

    void AddLeftFiles(const RunEnd& end, std::vector<std::string>& wrong) const {
        for (const std::string& name : support::Names(Path("out"))) {
            const bool known = name == fs::path(kDatabase).filename() || name == fs::path(kKept).filename();
            const bool is_part = name.starts_with(".velmarcon-") && name.ends_with(".part");
            if (!known && !(is_part && (end.killed || end.may_leave_part))) {
                wrong.push_back(name + " was left");
            }
        }
    }

    Scratch scratch_;
    std::map<std::string, Bytes> inputs_;
    Command run_;
    std::vector<IoCall> calls_;
    std::vector<std::size_t> swept_;  ///< numbers of calls
    std::string made_;                ///< the database after a run without faults
    int runs_ = 0;
    int violations_ = 0;
};

TEST_F(CalibrateSweep, OneCallFails) {
    FailEach(false);
}

TEST_F(CalibrateSweep, ACallAndAllLaterOnesOfItsKindFail) {
    FailEach(true);
}

TEST_F(CalibrateSweep, TheRunIsKilled) {
    KillAtEach();
}

}  // namespace

}  // namespace faults
