// SPDX-License-Identifier: MIT
#include "batch/dry_run.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "batch/batch_run.h"
#include "samples/camera_dng.h"
#include "samples/camera_jpeg.h"
#include "samples/shot.h"
#include "tests/batch/run_folders.h"
#include "tests/support/camera_dng.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/files.h"

namespace {

/// The shot of another picture of the same camera.
samples::Shot AnotherShot() {
    samples::Shot shot;
    shot.image_unique_id = "00000000000000000000000000000002";
    shot.date_time = "2007:08:03 10:00:00";
    return shot;
}

class DryRunTest : public testing::Test {
  protected:
    void SetUp() override {
        support::WriteFile(run_.top / "in/L1.JPG", samples::CameraJpeg(samples::CameraExif(samples::Shot())));
    }

    /// A DNG with the tags of `shot` in the place of L1's.
    void WriteDng(const samples::Shot& shot) const {
        support::WriteFile(run_.dng, samples::Serialize(support::SmallCameraDng(12, 7, shot)));
    }

    /// What is printed; the status goes into `status_`.
    std::string Print() {
        FoundPictures found;
        found.pictures = run_.pictures;
        return support::CaptureStdout([&] { status_ = DryRun(run_.options, run_.trees, found); });
    }

    std::string Line(const std::string& what, const std::string& dng) const {
        return what + ": " + run_.raw + " -> " + dng;
    }

    RunFolders run_;
    int status_ = -1;
};

TEST_F(DryRunTest, ShowsWhatIsConverted) {
    EXPECT_EQ(Print(), Line("convert", run_.dng) + "\n1 picture\n");
    EXPECT_EQ(status_, batch_status::kDone);
    EXPECT_FALSE(std::filesystem::exists(run_.dng));
}

TEST_F(DryRunTest, ShowsWhatIsKeptOrRefreshed) {
    WriteDng(samples::Shot());
    EXPECT_EQ(Print(), Line("keep", run_.dng) + "\n1 picture\n");
    run_.options.conversion = {"-r"};
    EXPECT_EQ(Print(), Line("refresh", run_.dng) + "\n1 picture\n");
    EXPECT_EQ(status_, batch_status::kDone);
}

TEST_F(DryRunTest, ADngOfAnotherPictureMakesItFail) {
    WriteDng(AnotherShot());
    EXPECT_EQ(Print(), Line("fail", run_.dng) +
                           " (another picture; --rename gives this one another name)\n1 picture\n");
    EXPECT_EQ(status_, batch_status::kSomeFailed);
}

TEST_F(DryRunTest, WithRenameAnotherPictureStaysWhereItIs) {
    WriteDng(AnotherShot());
    run_.options.rename = true;
    EXPECT_EQ(Print(), Line("convert", run_.top / "out/L1-2.DNG") + "\n1 picture\n");
    EXPECT_EQ(status_, batch_status::kDone);
}

}  // namespace
