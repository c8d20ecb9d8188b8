// SPDX-License-Identifier: MIT
// Calibrates sensors whose defects are known: every defect is found, nothing else is, and the levels are
// close to the best possible.
#include "calibrate/calibration.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/calibrate/judged_sensor.h"

namespace {

using calibrate_tests::ExposureCounts;
using calibrate_tests::Judge;
using calibrate_tests::Judgement;
using Texts = std::vector<std::string>;

constexpr float kWeakest = 6;
constexpr double kMostStripes = 1.15;

/// A sensor and the exposures that are taken with it.
struct Case {
    std::uint64_t seed;
    ExposureCounts counts;
};

class CalibrationTest : public testing::TestWithParam<Case> {};

TEST_P(CalibrationTest, FindsEveryDefectAndNothingElse) {
    const auto& [seed, counts] = GetParam();
    const Judgement judgement = Judge(samples::RandomSensor(seed, kWeakest, counts.flat > 0), counts);
    EXPECT_EQ(judgement.missed, Texts());
    EXPECT_EQ(judgement.false_finds, Texts());
    EXPECT_LT(judgement.stripes, kMostStripes * judgement.optimum);
}

TEST_P(CalibrationTest, FindsNothingInASoundSensor) {
    const auto& [seed, counts] = GetParam();
    const Judgement judgement = Judge(samples::SoundSensor(seed), counts);
    EXPECT_EQ(judgement.false_finds, Texts());
    EXPECT_LT(judgement.stripes, kMostStripes * judgement.optimum);
}

INSTANTIATE_TEST_SUITE_P(Sensors, CalibrationTest,
                         testing::Values(Case{31, {4, 0, 0}}, Case{32, {4, 4, 0}}, Case{33, {4, 0, 2}},
                                         Case{34, {2, 2, 2}}, Case{35, {3, 0, 1}}),
                         [](const auto& one) { return "Seed" + std::to_string(one.param.seed); });

samples::SimulatedSensor QuietSensor() {
    samples::SimulatedSensor sensor;
    sensor.hot_pixels = 500;
    return sensor;
}

/// The defects found in four dark exposures of the sensor.
std::vector<Defect> DefectsOf(const samples::SimulatedSensor& sensor, std::uint16_t second_iso = 160) {
    Calibration calibration;
    samples::SimulatedExposure exposure;
    for (int i = 0; i < 4; ++i) {
        exposure.seed = 900 + static_cast<std::uint64_t>(i);
        exposure.iso = i < 2 ? 160 : second_iso;
        const auto pixels = samples::ExposePixels(sensor, exposure);
        EXPECT_EQ(calibration.AddDark({.name = "", .iso = exposure.iso, .pixels = pixels}), "");
    }
    calibration.Search();
    calibration.Finish(false);
    return calibration.defects();
}

TEST(CalibrationDefectTest, APartOfAColumnIsFoundWithItsRowsStrengthAndExposures) {
    samples::SimulatedSensor sensor = QuietSensor();
    sensor.defects = {{.column = 1203, .first_row = 700, .dark = 20}};
    const std::vector<Defect> found = DefectsOf(sensor);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].column, 1203);
    EXPECT_NEAR(found[0].first_row, 700, 6);
    EXPECT_EQ(found[0].end_row, 2646);
    EXPECT_EQ(found[0].kind, DefectKind::kBright);
    EXPECT_NEAR(found[0].strength, 20, 0.3);
    EXPECT_EQ(found[0].seen, 4);
    EXPECT_EQ(found[0].exposures, 4);
}

TEST(CalibrationDefectTest, ThePartThatMatchesTheNeighboursIsSoundEvenIfItIsSmaller) {
    samples::SimulatedSensor sensor = QuietSensor();
    sensor.defects = {{.column = 500, .first_row = 400, .dark = -30}};
    const std::vector<Defect> found = DefectsOf(sensor);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NEAR(found[0].first_row, 400, 6);
    EXPECT_EQ(found[0].end_row, 2646);
    EXPECT_EQ(found[0].kind, DefectKind::kLow);
}

TEST(CalibrationDefectTest, AColumnWithAConstantOffsetOfAFewUnitsIsNotADefect) {
    samples::SimulatedSensor sensor = QuietSensor();
    sensor.defects = {{.column = 1203, .dark = 4}, {.column = 2750, .dark = 5}};
    EXPECT_TRUE(DefectsOf(sensor).empty());
}

TEST(CalibrationDefectTest, AColumnThatAlwaysReadsTheSameOrdinaryValueIsStuck) {
    samples::SimulatedSensor sensor = QuietSensor();
    sensor.defects = {{.column = 2750, .stuck = std::uint16_t{92}}};
    const std::vector<Defect> found = DefectsOf(sensor);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].column, 2750);
    EXPECT_EQ(found[0].kind, DefectKind::kStuck);
    EXPECT_EQ(found[0].first_row, 0);
    EXPECT_EQ(found[0].end_row, 2646);
}

TEST(CalibrationDefectTest, AnExposureWithALightLeakIsNotDark) {
    Calibration calibration;
    samples::SimulatedExposure exposure;
    exposure.light_leak = 80;
    const auto pixels = samples::ExposePixels(QuietSensor(), exposure);
    EXPECT_EQ(calibration.AddDark({.name = "", .iso = 160, .pixels = pixels}).substr(0, 26),
              "not dark: some of its rows");
}

TEST(CalibrationDefectTest, AnExposureWithoutTheCapIsNotDark) {
    Calibration calibration;
    samples::SimulatedExposure exposure;
    exposure.light = 0.2F;
    const auto pixels = samples::ExposePixels(QuietSensor(), exposure);
    EXPECT_EQ(calibration.AddDark({.name = "", .iso = 160, .pixels = pixels}).substr(0, 26),
              "not dark: half of its pixe");
}

/// The verdict on an exposure of vertical bands of light that differ by `contrast`.
std::string BandsAsFlat(float contrast) {
    Calibration calibration;
    const samples::SimulatedSensor sensor = QuietSensor();
    const auto dark = samples::ExposePixels(sensor, {});
    EXPECT_EQ(calibration.AddDark({.name = "", .iso = 160, .pixels = dark}), "");
    calibration.Search();
    samples::SimulatedExposure exposure;
    exposure.light = 0.4F;
    auto pixels = samples::ExposePixels(sensor, exposure);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (i % samples::kSensorWidth / 200 % 2 == 0) {
            pixels[i] = static_cast<std::uint16_t>(static_cast<float>(pixels[i]) * (1 - contrast));
        }
    }
    return calibration.AddFlat({.name = "", .iso = 160, .pixels = pixels});
}

TEST(CalibrationDefectTest, APictureWithContrastIsNotFlat) {
    EXPECT_EQ(BandsAsFlat(0.3F), "not a flat exposure: its light is not even");
    EXPECT_EQ(BandsAsFlat(0), "");
}

TEST(CalibrationDefectTest, LevelsAreRelativeToTheDarkestSoundColumnAndNeverNegative) {
    samples::SimulatedSensor sensor = QuietSensor();
    sensor.defects = {{.column = 2750, .stuck = std::uint16_t{0}}};
    Calibration calibration;
    const auto pixels = samples::ExposePixels(sensor, {});
    ASSERT_EQ(calibration.AddDark({.name = "", .iso = 160, .pixels = pixels}), "");
    calibration.Search();
    calibration.Finish(false);
    const auto& levels = calibration.levels().above_darkest;
    ASSERT_EQ(levels.size(), 3968U);
    EXPECT_EQ(std::ranges::min(levels), 0);
    EXPECT_LT(std::ranges::max(levels), 8);
}

}  // namespace
