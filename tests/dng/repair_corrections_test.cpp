// SPDX-License-Identifier: MIT
// Tests the corrections of a repair: sensor and lens data.
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/maker_note.h"
#include "tests/dng/repair_run.h"
#include "tests/support/camera_dng.h"
#include "tiff/tags.h"

namespace {

using Numbers = std::vector<std::uint32_t>;
using support::SmallCameraDng;

constexpr int kWidth = 3920;  // by this width the corrections recognise a cropped frame
constexpr int kHeight = 8;

const char* const kNoLines = "No pixel error correction values available for camera No.3106091.\n";
const char* const kNoLevels = "No dark field correction values available for camera No.3106091.\n";

RepairRequest SensorFix() {
    return {.sensor_fix = true, .dark_field_fix = true};
}

std::string Lines(const std::vector<int>& values) {
    std::string text;
    for (const int value : values) {
        text += "Line = " + std::to_string(value) + "\n";
    }
    return text;
}

/// The dark level of sensor column `column`: an integer that differs from its neighbours.
int Level(int column) {
    return 1 + column % 3 * 40;
}

std::string Levels() {
    std::string text;
    for (int column = 0; column < 3968; ++column) {
        text += "LevelCorrection = " + std::to_string(Level(column)) + "\n";
    }
    return text;
}

/// A section of the sensor database for the camera of the sample shot.
std::string Section(const std::string& values) {
    return "[3106091]\n" + values;
}

class RepairedSensor : public testing::Test {
  protected:
    RepairedSensor() { run_.WriteInput(SmallCameraDng(kWidth, kHeight)); }

    static std::size_t At(int column, int row) {
        return static_cast<std::size_t>(row) * kWidth + static_cast<std::size_t>(column);
    }

    RepairRun run_;
    const std::vector<std::uint16_t> levels_ = support::CameraLevels(kWidth, kHeight);
};

TEST_F(RepairedSensor, WithoutADatabaseIsReportedAndStaysUncorrected) {
    const auto result = run_.Repair(SensorFix());
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "Error #0014: No Sensor database found.\n");
    EXPECT_EQ(run_.Output().Pixels(), levels_);
    EXPECT_FALSE(run_.Output().ifd0.Has(tag::kHostComputer));
}

TEST_F(RepairedSensor, OfAnUnknownCameraHasNoDarkField) {
    run_.WriteSensorDatabase("[3106092]\n" + Lines({30, 0, 30, 100}) + Levels());
    EXPECT_EQ(run_.Repair(SensorFix()).output, kNoLevels);
    EXPECT_EQ(run_.Output().Pixels(), levels_);
    EXPECT_FALSE(run_.Output().ifd0.Has(tag::kHostComputer));
}

TEST_F(RepairedSensor, HasItsDefectiveColumnsInterpolated) {
    // Column 124 of the sensor is column 100 here; its row 10 is row 4.
    run_.WriteSensorDatabase(Section(Lines({124, 10, 124, 5000})));
    EXPECT_EQ(run_.Repair(SensorFix()).output, kNoLevels);
    auto expected = levels_;
    support::InterpolateColumn(expected, kWidth, 100, 4);
    EXPECT_EQ(run_.Output().Pixels(), expected);
}

TEST_F(RepairedSensor, HasItsDefectiveColumnsPaintedWhiteInATest) {
    run_.WriteSensorDatabase(Section(Lines({124, 10, 124, 5000})));
    run_.Repair({.sensor_fix = true, .dark_field_fix = true, .line_test = true});
    auto expected = levels_;
    for (int row = 4; row < kHeight; ++row) {
        expected[At(100, row)] = 16383;
    }
    EXPECT_EQ(run_.Output().Pixels(), expected);
}

TEST_F(RepairedSensor, WithSixLineValuesIsNotRepaired) {
    run_.WriteSensorDatabase(Section(Lines({124, 0, 124, 5000, 130, 0})));
    EXPECT_EQ(run_.Repair(SensorFix()).output, std::string(kNoLines) + kNoLevels);
    EXPECT_EQ(run_.Output().Pixels(), levels_);
}

TEST_F(RepairedSensor, HasItsStepsPrintedWhenVerbose) {
    run_.WriteSensorDatabase(Section(Lines({124, 0, 124, 5000}) + Levels()));
    EXPECT_EQ(run_.Repair({.verbose = true, .sensor_fix = true, .dark_field_fix = true}).output,
              "Reading DNG Image...Done\n"
              "Fixing pixel errors...Done!\n"
              "Fixing sensor dark field...Done!\n"
              "Writing DNG header...Done!\n"
              "Writing image data...Done!\n");
}

TEST_F(RepairedSensor, WithoutTheSensorFixIsUnchanged) {
    run_.WriteSensorDatabase(Section(Lines({124, 0, 124, 5000}) + Levels()));
    EXPECT_EQ(run_.Repair({.dark_field_fix = true, .line_test = true}).output, "");
    EXPECT_EQ(run_.Output().Pixels(), levels_);
}

/// Expects that `gain` times the level of column x + 23 was subtracted, plus a dither below 1.
void ExpectDarkFieldRemoved(const std::vector<std::uint16_t>& pixels,
                            const std::vector<std::uint16_t>& before, int gain) {
    ASSERT_EQ(pixels.size(), before.size());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const int level = gain * Level(static_cast<int>(i) % kWidth + 23);
        const int expected = std::max(before[i] - level, 0);
        // In single precision, level plus dither may be rounded up to the next integer.
        ASSERT_TRUE(pixels[i] == expected || (pixels[i] == expected - 1)) << i << ' ' << before[i];
    }
}

TEST_F(RepairedSensor, HasItsDarkFieldRemovedAndIsMarked) {
    run_.WriteSensorDatabase(Section(Levels()));
    EXPECT_EQ(run_.Repair(SensorFix()).output, "");
    ExpectDarkFieldRemoved(run_.Output().Pixels(), levels_, 1);
    const auto host = run_.Output().ifd0.At(tag::kHostComputer);
    EXPECT_EQ(host.type, 2);
    EXPECT_EQ(host.Text(), std::string("velmarcon\0", 10));
}

TEST_F(RepairedSensor, ScalesItsDarkFieldByTheIsoSpeed) {
    run_.WriteSensorDatabase(Section(Levels()));
    for (const auto& [iso, gain] : {std::pair{320, 2}, {2500, 16}, {400, 1}}) {
        run_.WriteInput(SmallCameraDng(kWidth, kHeight, {.iso = static_cast<std::uint16_t>(iso)}));
        run_.Repair(SensorFix());
        ExpectDarkFieldRemoved(run_.Output().Pixels(), levels_, gain);
    }
}

TEST_F(RepairedSensor, WithoutAnIsoSpeedHasItsDarkFieldUnscaled) {
    run_.WriteSensorDatabase(Section(Levels()));
    auto camera = SmallCameraDng(kWidth, kHeight);
    samples::Remove(camera.exif, tag::kISOSpeedRatings);
    run_.WriteInput(camera);
    EXPECT_EQ(run_.Repair(SensorFix()).code, 0);
    ExpectDarkFieldRemoved(run_.Output().Pixels(), levels_, 1);
}

TEST_F(RepairedSensor, WithoutTheDarkFieldFixKeepsItsDarkField) {
    run_.WriteSensorDatabase(Section(Levels()));
    EXPECT_EQ(run_.Repair({.sensor_fix = true}).output, "");
    EXPECT_EQ(run_.Output().Pixels(), levels_);
    EXPECT_FALSE(run_.Output().ifd0.Has(tag::kHostComputer));
}

TEST_F(RepairedSensor, IsMarkedAsCorrectedEvenWhenNothingWasSubtracted) {
    // Too few levels for the frame leave it unchanged, but the correction counts as made.
    run_.WriteSensorDatabase(Section("LevelCorrection = 100\n"));
    EXPECT_EQ(run_.Repair(SensorFix()).output, "");
    EXPECT_EQ(run_.Output().Pixels(), levels_);
    EXPECT_TRUE(run_.Output().ifd0.Has(tag::kHostComputer));
}

TEST_F(RepairedSensor, HasItsColumnsButNotItsDarkFieldCorrectedTwice) {
    run_.WriteSensorDatabase(Section(Levels()));
    run_.Repair(SensorFix());
    const auto once = run_.Output().Pixels();
    run_.WriteInput(support::ReadFile(run_.OutputPath()));
    run_.WriteSensorDatabase(Section(Lines({124, 6, 124, 5000}) + Levels()));
    EXPECT_EQ(
        run_.Repair({.verbose = true, .sensor_fix = true, .dark_field_fix = true, .line_test = true}).output,
        "Reading DNG Image...Done\n"
        "Fixing pixel errors...Done!\n"
        "Writing DNG header...Done!\n"
        "Writing image data...Done!\n");
    auto expected = once;
    for (int row = 0; row < kHeight; ++row) {
        expected[At(100, row)] = 16383;
    }
    EXPECT_TRUE(run_.Output().Pixels() == expected);
}

TEST_F(RepairedSensor, CountsAsCorrectedWhereTheHostComputerContainsTheProgramsName) {
    run_.WriteSensorDatabase(Section(Levels()));
    auto camera = SmallCameraDng(kWidth, kHeight);
    samples::Set(camera.ifd0, samples::Ascii(tag::kHostComputer, "by velmarcon 1.20"));
    run_.WriteInput(camera);
    EXPECT_EQ(run_.Repair(SensorFix()).output, "");
    EXPECT_EQ(run_.Output().Pixels(), levels_);
    EXPECT_EQ(run_.Output().ifd0.At(tag::kHostComputer).count, 18U);

    samples::Set(camera.ifd0, samples::Ascii(tag::kHostComputer, "velmarco"));
    run_.WriteInput(camera);
    run_.Repair(SensorFix());
    ExpectDarkFieldRemoved(run_.Output().Pixels(), levels_, 1);
    EXPECT_EQ(run_.Output().ifd0.At(tag::kHostComputer).Text(), std::string("velmarcon\0", 10));
}

TEST_F(RepairedSensor, CannotBecomeADarkReference) {
    RepairRequest creation = SensorFix();
    creation.dark_field_creation = true;
    const std::string refusal = "Error #0018: Darkfield estimation not possible from DNG file.\n";
    // A missing database makes no difference then.
    EXPECT_EQ(run_.Repair(creation).output, refusal + kNoLevels);
    EXPECT_EQ(run_.Output().Pixels(), levels_);

    run_.WriteSensorDatabase(Section(Lines({124, 0, 124, 5000}) + Levels()));
    creation.verbose = true;
    EXPECT_EQ(run_.Repair(creation).output,
              "Reading DNG Image...Done\n"
              "Fixing pixel errors...Done!\n" +
                  refusal +
                  "Fixing sensor dark field...Done!\n"
                  "Writing DNG header...Done!\n"
                  "Writing image data...Done!\n");
}

TEST_F(RepairedSensor, WithRowEstimationSubtractsWithoutDither) {
    // Pixels of 110 are just too bright for an estimate, so all row offsets are 0, and column x loses level
    // x. The even rows must be the darker ones, because odd rows would give NaN; the bright first row ensures
    // that.
    auto camera = SmallCameraDng(kWidth, kHeight);
    std::fill(camera.raw.begin(), camera.raw.end(), std::uint8_t{21});
    std::fill_n(camera.raw.begin(), kWidth, std::uint8_t{200});
    run_.WriteInput(camera);
    run_.WriteSensorDatabase(Section(Levels()));
    RepairRequest request = SensorFix();
    request.estimate_rows = true;
    run_.Repair(request);
    const auto pixels = run_.Output().Pixels();
    for (int column : {0, 1, 2, 1959, 1960, 3919}) {
        EXPECT_EQ(pixels[At(column, 5)], 110 - Level(column)) << column;
    }
}

// --- Lens

const lensdb::Lensdbtype kSummicron = {
    "Leica", "Summicron-M 50mm f/2", "1234567", 50.0, {131072, 183501, 262144, 367002, 524288}};

class RepairedLens : public testing::Test {
  protected:
    RepairedLens() { run_.lenses.Lenses["100001"] = kSummicron; }

    /// The EXIF IFD after a repair with the lens fix.
    support::TiffIFD Fixed(const samples::Shot& shot, const std::string& lens_code = "",
                           const std::string& output = "") {
        run_.WriteInput(SmallCameraDng(4, 4, shot));
        EXPECT_EQ(run_.Repair({.lens_fix = true, .lens_code = lens_code}).output, output);
        return run_.Output().exif;
    }

    RepairRun run_;
};

/// The camera's estimate is f/5.72: -98304 - -188304 + 285082 = 375082.
samples::Shot LensShot(std::uint8_t code) {
    samples::Shot shot;
    shot.lens_code = code;
    shot.external_light = {-98304, 65536};
    shot.measured_light = {-188304, 65536};
    shot.approximate_f_number = {111, 65537};
    shot.focal_length = {28000, 1000};
    shot.focal_length_35mm = 37;
    shot.max_aperture = {194698, 65536};
    return shot;
}

void ExpectLensOfTheCamera(const support::TiffIFD& exif) {
    EXPECT_EQ(exif.At(tag::kMaxApertureValue).Numbers(), (Numbers{194698, 65536}));
    EXPECT_EQ(exif.At(tag::kFocalLength).Numbers(), (Numbers{28000, 1000}));
    EXPECT_EQ(exif.At(tag::kFocalLengthIn35mmFilm).Numbers(), Numbers{37});
    for (const std::uint16_t tag : {tag::kLensMake, tag::kLensModel, tag::kLensSerialNumber}) {
        EXPECT_FALSE(exif.Has(tag)) << tag;
    }
}

void ExpectSummicron(const support::TiffIFD& exif) {
    EXPECT_EQ(exif.At(tag::kLensMake).Text(), std::string("Leica\0", 6));
    EXPECT_EQ(exif.At(tag::kLensModel).Text(), std::string("Summicron-M 50mm f/2\0", 21));
    EXPECT_EQ(exif.At(tag::kLensSerialNumber).Text(), std::string("1234567\0", 8));
    EXPECT_EQ(exif.At(tag::kFocalLength).type, 5);
    EXPECT_EQ(exif.At(tag::kFocalLength).Numbers(), (Numbers{50000, 1000}));
    EXPECT_EQ(exif.At(tag::kFocalLengthIn35mmFilm).type, 3);
    EXPECT_EQ(exif.At(tag::kFocalLengthIn35mmFilm).Numbers(), Numbers{67});  // 66.5 + 0.5
    EXPECT_EQ(exif.At(tag::kFNumber).type, 5);
    EXPECT_EQ(exif.At(tag::kFNumber).Numbers(), (Numbers{367002, 65537}));
    EXPECT_EQ(exif.At(tag::kMaxApertureValue).type, 5);
    EXPECT_EQ(exif.At(tag::kMaxApertureValue).Numbers(), (Numbers{1999, 1000}));
}

TEST_F(RepairedLens, IsTheOneOfTheCamerasCode) {
    ExpectSummicron(Fixed(LensShot(33)));
}

TEST_F(RepairedLens, OfTheCameraIsNeverReplaced) {
    run_.lenses.Lenses["011100"] = {"Other", "Other", "1", 90, {183501}};
    ExpectSummicron(Fixed(LensShot(33), "011100"));
}

TEST_F(RepairedLens, IsTheGivenOneIfTheCameraSawNone) {
    ExpectSummicron(Fixed(LensShot(0), "100001"));
}

TEST_F(RepairedLens, ThatIsUnknownIsReportedAndGetsTheEstimatedFNumber) {
    const auto exif = Fixed(LensShot(0), "", "Error #0013: Lens could not be detected.\n");
    EXPECT_EQ(exif.At(tag::kFNumber).Numbers(), (Numbers{375082, 65537}));
    ExpectLensOfTheCamera(exif);
}

TEST_F(RepairedLens, MissingFromTheDatabaseGetsTheEstimatedFNumberSilently) {
    for (const auto& exif : {Fixed(LensShot(12)), Fixed(LensShot(12), "100001"), Fixed(LensShot(0), "001100"),
                             Fixed(LensShot(0), "33")}) {
        EXPECT_EQ(exif.At(tag::kFNumber).Numbers(), (Numbers{375082, 65537}));
        ExpectLensOfTheCamera(exif);
    }
}

TEST_F(RepairedLens, WithoutTheLensFixIsUnchanged) {
    run_.WriteInput(SmallCameraDng(4, 4, LensShot(33)));
    EXPECT_EQ(run_.Repair({.lens_code = "100001"}).output, "");
    EXPECT_FALSE(run_.Output().exif.Has(tag::kFNumber));
    ExpectLensOfTheCamera(run_.Output().exif);
}

TEST_F(RepairedLens, WithoutASerialNumberGetsNone) {
    run_.lenses.Lenses["100001"].SerialNo.clear();
    const auto exif = Fixed(LensShot(33));
    EXPECT_TRUE(exif.Has(tag::kLensModel));
    EXPECT_FALSE(exif.Has(tag::kLensSerialNumber));
}

TEST_F(RepairedLens, WithoutAperturesGetsTheEstimatedFNumber) {
    run_.lenses.Lenses["100001"].Aperture.clear();
    const auto exif = Fixed(LensShot(33));
    EXPECT_TRUE(exif.Has(tag::kLensModel));
    EXPECT_EQ(exif.At(tag::kFNumber).Numbers(), (Numbers{375082, 65537}));
    EXPECT_EQ(exif.At(tag::kMaxApertureValue).Numbers(), (Numbers{194698, 65536}));
}

TEST_F(RepairedLens, HasTheNearestApertureAndOfTwoEquallyNearTheLaterOne) {
    samples::Shot shot = LensShot(33);
    // The estimate is halfway between f/2 and f/2.8: (131072 + 183500) / 2 = 157286.
    run_.lenses.Lenses["100001"].Aperture = {131072, 183500, 262144};
    shot.external_light.numerator = 157286 - 285082 + shot.measured_light.numerator;
    EXPECT_EQ(Fixed(shot).At(tag::kFNumber).Numbers(), (Numbers{183500, 65537}));
    shot.external_light.numerator -= 1;
    EXPECT_EQ(Fixed(shot).At(tag::kFNumber).Numbers(), (Numbers{131072, 65537}));
}

TEST_F(RepairedLens, HasAFractionOfAMillimetreRounded) {
    run_.lenses.Lenses["100001"].FocalLength = 51.6294;
    const auto exif = Fixed(LensShot(33));
    EXPECT_EQ(exif.At(tag::kFocalLength).Numbers(), (Numbers{51629, 1000}));
    EXPECT_EQ(exif.At(tag::kFocalLengthIn35mmFilm).Numbers(), Numbers{69});  // 68.67 + 0.5
}

TEST_F(RepairedLens, WithoutAMakerNoteCountsAsUncoded) {
    auto camera = SmallCameraDng(4, 4, LensShot(33));
    samples::Remove(camera.exif, tag::kMakerNote);
    run_.WriteInput(camera);
    const auto result = run_.Repair({.lens_fix = true});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.output, "Error #0013: Lens could not be detected.\n");
    EXPECT_EQ(run_.Output().exif.At(tag::kFNumber).Numbers(), (Numbers{285082, 0}));
}

}  // namespace
