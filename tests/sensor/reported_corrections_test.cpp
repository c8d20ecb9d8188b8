// SPDX-License-Identifier: MIT
#include "sensor/reported_corrections.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/pixel.h"
#include "tests/support/capture_stdout.h"

namespace {

constexpr std::uint32_t kSerial = 4000000000;  // too large for a signed number

class ReportedCorrectionsTest : public testing::Test {
  protected:
    std::string FixPixelLines(std::vector<std::uint16_t> list, bool verbose, bool test = false) {
        sensors_.Camera(kSerial).Line = std::move(list);
        return support::CaptureStdout(
            [&] { ReportedCorrections(image_, sensors_, verbose).FixPixelLines(test); });
    }

    std::string FixDarkField(std::vector<float> levels, bool verbose) {
        sensors_.Camera(kSerial).LevelCorrection = std::move(levels);
        return support::CaptureStdout(
            [&] { has_levels_ = ReportedCorrections(image_, sensors_, verbose).FixDarkField(true); });
    }

    sensdb sensors_ = sensdb("");
    std::vector<Pixel> pixels_ = {50, 50, 50, 50, 50, 50, 50, 50};
    SensorImage image_ = {kSerial, 160, &pixels_, 4, 2};
    bool has_levels_ = false;
};

TEST_F(ReportedCorrectionsTest, PixelFixNamesItselfOnlyWhenVerbose) {
    EXPECT_EQ(FixPixelLines({1, 0, 1, 2}, true), "Fixing pixel errors...Done!\n");
    EXPECT_EQ(FixPixelLines({1, 0, 1, 2}, false), "");
}

TEST_F(ReportedCorrectionsTest, PixelFixPaintsWhiteOnlyAsATest) {
    FixPixelLines({1, 0, 1, 1}, false);
    EXPECT_EQ(pixels_[1], 45) << "a column at the edge comes out at nine tenths";
    FixPixelLines({1, 0, 1, 1}, false, true);
    EXPECT_EQ(pixels_[1], 16383);
}

TEST_F(ReportedCorrectionsTest, ACameraWithoutDefectsIsUnchangedSilently) {
    EXPECT_EQ(FixPixelLines({}, true), "");
}

TEST_F(ReportedCorrectionsTest, AnIncompleteDefectListIsReportedAndNotUsed) {
    const auto untouched = pixels_;
    for (const bool verbose : {false, true}) {
        EXPECT_EQ(FixPixelLines({1, 0, 1, 2, 3, 0}, verbose),
                  "No pixel error correction values available for camera No.4000000000.\n");
    }
    EXPECT_EQ(pixels_, untouched);
}

TEST_F(ReportedCorrectionsTest, DarkFieldFixNamesItselfOnlyWhenVerbose) {
    EXPECT_EQ(FixDarkField({1, 2, 3, 4}, true), "Fixing sensor dark field...Done!\n");
    EXPECT_TRUE(has_levels_);
    EXPECT_EQ(pixels_, (std::vector<Pixel>{49, 48, 47, 46, 49, 48, 47, 46}));
    EXPECT_EQ(FixDarkField({1, 2, 3, 4}, false), "");
    EXPECT_TRUE(has_levels_);
}

TEST_F(ReportedCorrectionsTest, MissingDarkLevelsAreReported) {
    const auto untouched = pixels_;
    for (const bool verbose : {false, true}) {
        has_levels_ = true;
        EXPECT_EQ(FixDarkField({}, verbose),
                  "No dark field correction values available for camera No.4000000000.\n");
        EXPECT_FALSE(has_levels_);
    }
    EXPECT_EQ(pixels_, untouched);
}

}  // namespace
