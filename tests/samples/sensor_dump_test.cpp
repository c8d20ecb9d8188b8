// SPDX-License-Identifier: MIT
#include "samples/sensor_dump.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

namespace {

using samples::kSensorHeight;
using samples::kSensorWidth;
using samples::WordIndex;

const std::vector<float>& SceneLight() {
    static const std::vector<float> kLight =
        samples::ExposeSensor(samples::Scene(kSensorWidth, kSensorHeight));
    return kLight;
}

samples::SensorOptions Plain() {
    samples::SensorOptions options;
    options.noise = false;
    options.column_pattern = 0;
    options.defects.clear();
    return options;
}

double ColumnMean(const std::vector<std::uint16_t>& words, int x) {
    double sum = 0;
    for (int y = 0; y < kSensorHeight; ++y) {
        sum += words[WordIndex(x, y)];
    }
    return sum / kSensorHeight;
}

TEST(SampleDump, HasTheSizeOfACameraFile) {
    EXPECT_EQ(samples::kDumpBytes, 21041100U);
    const std::vector<std::uint16_t> words = samples::FlatWords(0x1234);
    const std::vector<std::uint8_t> bytes = samples::DumpBytes(words);
    EXPECT_EQ(bytes.size(), 21041100U);
    EXPECT_EQ(bytes[108], 0x34);
    EXPECT_EQ(bytes[109], 0x12);
}

TEST(SampleDump, RowsAre3976WordsWith3968Pixels) {
    EXPECT_EQ(WordIndex(0, 0), 54U);
    EXPECT_EQ(WordIndex(0, 1), 54U + 3976U);
    const std::vector<std::uint16_t> words = samples::FlatWords(7);
    EXPECT_EQ(std::ranges::count(words, 7), std::ptrdiff_t{kSensorWidth} * kSensorHeight);
    EXPECT_NE(words[53], 7);
    EXPECT_NE(words[WordIndex(kSensorWidth, 0)], 7);
}

TEST(SampleDump, TheSameSeedGivesTheSameWords) {
    samples::SensorOptions options;
    const std::vector<std::uint16_t> first = samples::Words(SceneLight(), options);
    EXPECT_EQ(first, samples::Words(SceneLight(), options));
    options.seed = 2;
    EXPECT_NE(first, samples::Words(SceneLight(), options));
}

TEST(SampleDump, GreenWhiteIsThreeQuartersOfTheRangeAndNothingClips) {
    const samples::Scene scene(kSensorWidth, kSensorHeight);
    const samples::Patch& white = scene.WedgePatches().back();
    const std::vector<std::uint16_t> words = samples::Words(SceneLight(), Plain());
    const int x = (white.x + 20) / 2 * 2;
    const int y = (white.y + 20) / 2 * 2;
    constexpr double kGreen = 0.75 * 16383;
    EXPECT_NEAR(words[WordIndex(x + 1, y)], 92 + kGreen, 2);
    EXPECT_NEAR(words[WordIndex(x, y)], 92 + (kGreen * 16384 / 34488), 2);
    EXPECT_NEAR(words[WordIndex(x + 1, y + 1)], 92 + (kGreen * 16384 / 20567), 2);
    const std::vector<std::uint16_t> noisy = samples::Words(SceneLight(), {.iso = 2500, .defects = {}});
    EXPECT_LT(*std::ranges::max_element(noisy), samples::kSensorWhite);
}

/// Develops the 2 x 2 pixels at (x, y), both even: balances them to white and converts them to sRGB.
samples::Srgb Developed(const std::vector<float>& light, int x, int y) {
    constexpr std::array<std::array<float, 3>, 3> kSrgbFromCamera = {
        {{1.8088F, -0.3836F, -0.4253F}, {-0.1524F, 1.4539F, -0.3014F}, {0.0758F, -0.6641F, 1.5883F}}};
    constexpr float kWhite = 0.75F * 16383;
    const std::size_t corner = (static_cast<std::size_t>(y) * kSensorWidth) + static_cast<std::size_t>(x);
    const samples::LinearRgb camera = {light[corner] * 34488 / 16384 / kWhite, light[corner + 1] / kWhite,
                                       light[corner + kSensorWidth + 1] * 20567 / 16384 / kWhite};
    samples::LinearRgb linear = {};
    for (std::size_t i = 0; i < 3; ++i) {
        const samples::LinearRgb& row = kSrgbFromCamera.at(i);
        linear.at(i) = (row[0] * camera[0]) + (row[1] * camera[1]) + (row[2] * camera[2]);
    }
    return samples::ToSrgb(linear);
}

TEST(SampleDump, DevelopingTheLightGivesTheColoursOfTheChart) {
    const samples::Scene scene(kSensorWidth, kSensorHeight);
    for (const samples::Patch& patch : scene.ChartPatches()) {
        const int x = (patch.x + (patch.width / 2)) / 2 * 2;
        const int y = (patch.y + (patch.height / 2)) / 2 * 2;
        const samples::Srgb colour = Developed(SceneLight(), x, y);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(colour.at(i), patch.colour.at(i), 1);
        }
    }
}

TEST(SampleDump, DarkLevelAndPatternGrowWithIso) {
    samples::SensorOptions options;
    const std::vector<float> base = samples::ColumnDarkLevels(options);
    const std::array<std::uint16_t, 5> speeds = {160, 320, 640, 1250, 2500};
    for (std::size_t i = 0; i < speeds.size(); ++i) {
        options.iso = speeds.at(i);
        const std::vector<float> levels = samples::ColumnDarkLevels(options);
        EXPECT_FLOAT_EQ(levels[100], base[100] * static_cast<float>(1U << i));
    }
    const auto [lowest, highest] = std::ranges::minmax_element(base);
    EXPECT_GT(*lowest, 92 - 3);
    EXPECT_LT(*highest, 92 + 3);
    EXPECT_GT(*highest - *lowest, 2);
}

TEST(SampleDump, DarkFramesAverageToTheColumnLevels) {
    const samples::SensorOptions options = {.defects = {}};
    const std::vector<std::uint16_t> words = samples::DarkWords(options);
    const std::vector<float> levels = samples::ColumnDarkLevels(options);
    for (const int x : {0, 1, 1983, 1984, 3967}) {
        EXPECT_NEAR(ColumnMean(words, x), static_cast<double>(levels[static_cast<std::size_t>(x)]), 0.3);
    }
}

TEST(SampleDump, ColumnSumsOfADarkFrameKeepTheirOrderIn16Bits) {
    const std::vector<std::uint16_t> words = samples::DarkWords({});
    std::vector<std::uint16_t> sums(kSensorWidth);
    for (int x = 0; x < kSensorWidth; ++x) {
        unsigned sum = 0;
        for (int y = 0; y < kSensorHeight; ++y) {
            sum += words[WordIndex(x, y)];
        }
        sums[static_cast<std::size_t>(x)] = static_cast<std::uint16_t>(sum & 0xFFFFU);
    }
    const auto [lowest, highest] = std::ranges::minmax_element(sums);
    EXPECT_LT(*highest - *lowest, 6 * kSensorHeight);
}

TEST(SampleDump, PhotonNoiseFollowsTheSignal) {
    samples::SensorOptions options = Plain();
    options.noise = true;
    constexpr float kSignal = 4000;
    const std::vector<float> light(std::size_t{kSensorWidth} * kSensorHeight, kSignal);
    const std::vector<std::uint16_t> words = samples::Words(light, options);
    double squares = 0;
    for (int y = 0; y < kSensorHeight; ++y) {
        squares += std::pow(words[WordIndex(500, y)] - 92 - static_cast<double>(kSignal), 2);
    }
    EXPECT_NEAR(std::sqrt(squares / kSensorHeight), std::sqrt((0.3 * 4000) + (2.5 * 2.5)), 2);
}

TEST(SampleDump, DefectsReadTheirLevelInTheirRowsOnly) {
    samples::SensorOptions options = Plain();
    options.defects = {{.column = 10, .first_row = 5, .end_row = 7, .level = 9000}};
    const std::vector<std::uint16_t> words = samples::DarkWords(options);
    EXPECT_EQ(words[WordIndex(10, 4)], 92);
    EXPECT_EQ(words[WordIndex(10, 5)], 9000);
    EXPECT_EQ(words[WordIndex(10, 6)], 9000);
    EXPECT_EQ(words[WordIndex(10, 7)], 92);
    EXPECT_EQ(words[WordIndex(11, 5)], 92);
}

TEST(SampleDump, WeakDefectsAddTheirLevelTimesTheIsoGain) {
    samples::SensorOptions options = Plain();
    options.defects = {{.column = 10, .first_row = 5, .end_row = 6, .level = 40, .adds = true},
                       {.column = 11, .first_row = 5, .end_row = 6, .level = -40, .adds = true}};
    const std::vector<float> light(std::size_t{kSensorWidth} * kSensorHeight, 1000);
    const std::vector<std::uint16_t> words = samples::Words(light, options);
    EXPECT_EQ(words[WordIndex(10, 4)], 1092);
    EXPECT_EQ(words[WordIndex(10, 5)], 1132);
    EXPECT_EQ(words[WordIndex(11, 5)], 1052);
    options.iso = 640;
    EXPECT_EQ(samples::DarkWords(options)[WordIndex(10, 5)], (92 + 40) * 4);
}

TEST(SampleDump, TheSampleSensorHasWeakAndStrongDefects) {
    const std::vector<float> sky =
        samples::ExposeSensor(samples::Scene::GreySky(kSensorWidth, kSensorHeight));
    samples::SensorOptions options;
    options.noise = false;
    const std::vector<std::uint16_t> words = samples::Words(sky, options);
    const auto away = [&](int x, int y) {
        return words[WordIndex(x, y)] - (words[WordIndex(x - 2, y)] + words[WordIndex(x + 2, y)]) / 2;
    };
    EXPECT_GT(away(1203, 2000), 3000);
    EXPECT_LT(away(2750, 2000), -1000);
    EXPECT_NEAR(away(618, 1249), 0, 6);
    EXPECT_NEAR(away(618, 1250), 48, 6);
    EXPECT_NEAR(away(3310, 1799), -40, 6);
    EXPECT_NEAR(away(3310, 1800), 0, 6);
}

TEST(SampleDump, RowOffsetsRaiseTheHalvesOfARow) {
    samples::SensorOptions options = Plain();
    options.left_row_offsets = {0, 5};
    options.right_row_offsets = {0, 0, -3};
    const std::vector<std::uint16_t> words = samples::DarkWords(options);
    EXPECT_EQ(words[WordIndex(1983, 1)], 97);
    EXPECT_EQ(words[WordIndex(1984, 1)], 92);
    EXPECT_EQ(words[WordIndex(1983, 2)], 92);
    EXPECT_EQ(words[WordIndex(1984, 2)], 89);
    EXPECT_EQ(words[WordIndex(1984, 3)], 92);
}

TEST(SampleCrop, TakesTheSmallestIndexNearestToTheValue) {
    const std::array<std::uint16_t, 256> table = samples::LinearizationTable();
    EXPECT_EQ(table[3], 2);
    EXPECT_EQ(table[255], 16256);
    constexpr std::array<std::uint16_t, 11> kValues = {0, 1, 2, 3, 5, 91, 92, 1000, 12345, 16256, 16383};
    for (const std::uint16_t value : kValues) {
        const std::vector<std::uint8_t> bytes = samples::CroppedBytes(samples::FlatWords(value));
        ASSERT_EQ(bytes.size(), 3920U * 2638U);
        const auto* const nearest = std::ranges::min_element(
            table, {}, [value](std::uint16_t entry) { return std::abs(int{entry} - int{value}); });
        EXPECT_EQ(bytes.front(), nearest - table.begin());
        EXPECT_EQ(bytes.back(), nearest - table.begin());
    }
}

TEST(SampleCrop, StartsAtTheCropCorner) {
    std::vector<std::uint16_t> words = samples::FlatWords(0);
    words[WordIndex(samples::kCropLeft, samples::kCropTop)] = 16256;
    words[WordIndex(samples::kCropLeft + 3919, samples::kCropTop + 2637)] = 16256;
    const std::vector<std::uint8_t> bytes = samples::CroppedBytes(words);
    EXPECT_EQ(bytes.front(), 255);
    EXPECT_EQ(bytes.back(), 255);
    EXPECT_EQ(std::ranges::count(bytes, 255), 2);
}

}  // namespace
