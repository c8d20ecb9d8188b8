// SPDX-License-Identifier: MIT
// Runs the program with the 1st, 2nd, 3rd ... allocation failing, alone or with all later ones. Images that
// fail get a message, and every file is either the old one or a complete new one.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "app/run_program.h"
#include "samples/camera_jpeg.h"
#include "samples/sample_databases.h"
#include "tests/allocations/allocation_fault.h"
#include "tests/support/camera_dng.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/files.h"

#if defined(__SANITIZE_ADDRESS__)
/// Suppresses leak reports: the INI library does not free its copy of the file if it runs out of memory while
/// parsing.
extern "C" const char* __asan_default_options();   // NOLINT
extern "C" const char* __asan_default_options() {  // NOLINT
    return "detect_leaks=0";
}
#endif

namespace {

using Arguments = std::vector<std::string>;

/// The shortest RAW file that is accepted: half a dump; the rest becomes black.
constexpr std::uintmax_t kHalfDump = 10499328;

const char* const kSensors =
    "[3106091]\nLine = 24\nLine = 0\nLine = 24\nLine = 30\nLevelCorrection = 1\nLevelCorrection = 2\n";

/// How a run ended.
struct Result {
    int status = 0;
    long failed_allocations = 0;
    std::string output;
};

class AllocationSweep : public testing::Test {
  protected:
    AllocationSweep() {
        for (const char* name : {"in", "out", "bin"}) {
            std::filesystem::create_directory(folder_ / name);
        }
        support::WriteFile(In("A.JPG"), samples::CameraJpeg(samples::CameraExif({})));
        support::WriteFile(In("A.RAW"), "");
        std::filesystem::resize_file(In("A.RAW"), kHalfDump);
        support::WriteFile(In("D.DNG"), samples::Serialize(support::SmallCameraDng(64, 48)));
        support::WriteFile(folder_ / "bin/lensdb.ini", samples::LensDatabase());
        support::WriteFile(SensorDatabase(), kSensors);
        original_ = Inputs();
    }

    std::string In(const std::string& name) const { return folder_ / "in/" + name; }
    std::string Out(const std::string& name) const { return folder_ / "out/" + name; }
    std::string SensorDatabase() const { return folder_ / "bin/sensdb.ini"; }

    std::vector<std::string> OutputNames() const { return support::Names(folder_ / "out"); }

    /// The contents of the input files, concatenated.
    std::string Inputs() const {
        std::string all;
        for (const std::string& name : support::Names(folder_ / "in")) {
            const auto bytes = support::ReadFile(In(name));
            all.append(name).append(bytes.begin(), bytes.end());
        }
        return all;
    }

    /// Runs the program with the `which`th allocation failing (0: none).
    Result Run(const Arguments& arguments, long which, bool lasting) const {
        std::vector<std::string> texts = arguments;
        texts.insert(texts.begin(), folder_ / "bin/velmarcon");
        std::vector<char*> argv;
        std::ranges::transform(texts, std::back_inserter(argv),
                               [](std::string& text) { return text.data(); });
        Result result;
        result.output = support::CaptureStdout([&] {
            const AllocationFault fault(which, lasting && which != 0);
            result.status = RunProgram(argv);
            result.failed_allocations = fault.Failed();
        });
        return result;
    }

    /// Makes every allocation fail in turn. After each run `name`.DNG must either equal `whole` or be missing
    /// with a message. A run without faults must produce exactly `whole`.
    void Sweep(const Arguments& arguments, const std::string& name, bool lasting) {
        ASSERT_EQ(Run(arguments, 0, false).status, 0);
        const auto whole = support::ReadFile(Out(name + ".DNG"));
        const auto sensors = support::ReadFile(SensorDatabase());
        long runs = 0;
        long lost = 0;
        for (long which = 1;; which += Step(which), ++runs) {
            Restore(name);
            const Result result = Run(arguments, which, lasting);
            if (result.failed_allocations == 0) {
                break;
            }
            SCOPED_TRACE("allocation " + std::to_string(which) + ":\n" + result.output);
            ExpectOldOrWhole(name, whole, sensors);
            lost += ExpectReportIfLost(name, result) ? 1 : 0;
            ASSERT_FALSE(HasFailure());
        }
        EXPECT_EQ(support::ReadFile(Out(name + ".DNG")), whole) << "the run without a fault";
        EXPECT_GT(runs, 100);
        EXPECT_GT(lost, 50);
        EXPECT_TRUE(Inputs() == original_);
        if (HasFailure()) {
            return;
        }
        std::printf("%ld runs with a failed allocation, %ld of them without a DNG, 0 violations\n", runs,
                    lost);
    }

  private:
    /// Makes each of the first 700 allocations fail, then some at growing distances, because all values of
    /// the database are handled alike.
    static long Step(long which) {
        constexpr long all_up_to = 700;
        constexpr long part = 10;
        return which < all_up_to ? 1 : which / part;
    }

    /// Restores the files from before the run and removes the outputs.
    void Restore(const std::string& name) const {
        std::filesystem::remove(Out(name + ".DNG"));
        support::WriteFile(SensorDatabase(), kSensors);
    }

    void ExpectOldOrWhole(const std::string& name, const std::vector<std::uint8_t>& whole,
                          const std::vector<std::uint8_t>& sensors) const {
        if (std::filesystem::exists(Out(name + ".DNG"))) {
            EXPECT_EQ(OutputNames(), std::vector{name + ".DNG"});
            EXPECT_TRUE(support::ReadFile(Out(name + ".DNG")) == whole);
        } else {
            EXPECT_TRUE(OutputNames().empty()) << OutputNames().front();
        }
        const auto now = support::ReadFile(SensorDatabase());
        EXPECT_TRUE(now == sensors || std::ranges::equal(now, std::string_view(kSensors)));
        EXPECT_EQ(support::Names(folder_ / "bin"), (std::vector<std::string>{"lensdb.ini", "sensdb.ini"}));
    }

    /// Returns whether the DNG is missing.
    bool ExpectReportIfLost(const std::string& name, const Result& result) const {
        EXPECT_TRUE(result.status == 0 || result.status == kOutOfMemory) << result.status;
        if (std::filesystem::exists(Out(name + ".DNG"))) {
            return false;
        }
        const bool run_ended = result.output.find("velmarcon: out of memory\n") != std::string::npos;
        const bool image_failed = result.output.find(name + ".RAW: ") != std::string::npos ||
                                  result.output.find(name + ".JPG: ") != std::string::npos ||
                                  result.output.find(name + ".DNG: ") != std::string::npos;
        EXPECT_EQ(run_ended, result.status == kOutOfMemory);
        EXPECT_TRUE(run_ended || image_failed);
        return true;
    }

    support::TempFolder folder_;
    std::string original_;
};

class AllocationSweepOfKind : public AllocationSweep, public testing::WithParamInterface<bool> {};

TEST_P(AllocationSweepOfKind, ConversionLosesOnlyItsImage) {
    Sweep({"-i", In("A.RAW"), "-o", Out(""), "-v", "-p", "-b", "-l", "100001"}, "A", GetParam());
}

TEST_P(AllocationSweepOfKind, ConversionWithSensorFixLosesOnlyItsImage) {
    Sweep({"-i", In("A.RAW"), "-o", Out(""), "-s"}, "A", GetParam());
}

TEST_P(AllocationSweepOfKind, DarkReferenceKeepsTheOldOrTheNewDatabase) {
    Sweep({"-i", In("A.RAW"), "-o", Out(""), "-sd"}, "A", GetParam());
}

TEST_P(AllocationSweepOfKind, RepairLosesOnlyItsImage) {
    Sweep({"-i", In("D.DNG"), "-o", Out(""), "-v", "-s", "-l"}, "D", GetParam());
}

INSTANTIATE_TEST_SUITE_P(Failing, AllocationSweepOfKind, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "Lastingly" : "Once"; });

}  // namespace
