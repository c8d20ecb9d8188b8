// SPDX-License-Identifier: MIT
// The effect of the sensor corrections on the pixels of full-size pairs.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/sample_card.h"
#include "samples/scene.h"
#include "samples/sensor_dump.h"
#include "tests/end_to_end/card.h"
#include "tests/end_to_end/sensor_camera.h"
#include "tests/support/files.h"
#include "tests/support/test_pair.h"

namespace {

using end_to_end::ExpectedPixels;
using end_to_end::ExpectPixels;
using end_to_end::Levels;
using end_to_end::Lines;
using end_to_end::Section;
using end_to_end::SensorCamera;
using support::TestPixel;

constexpr int kWidth = 3968;
constexpr int kHeight = 2646;

/// The sample camera's defects: a column that is hot from row 700 on, and a dead one.
const std::vector<int> kDefects = {1203, 700, 1203, 2646, 2750, 0, 2750, 2646};

bool IsDefect(int x, int y) {
    return (x == 1203 && y >= 700) || x == 2750;
}

/// How much each column of an evenly lit area differs from its neighbours of the same colour.
class Stripes {
  public:
    /// Measures the even rows of `area`, without its edges.
    Stripes(const std::vector<std::uint16_t>& pixels, const samples::Patch& area) : first_(area.x + 4) {
        for (int x = first_; x < area.x + area.width - 4; ++x) {
            differences_.push_back(Mean(pixels, area, x) -
                                   (Mean(pixels, area, x - 2) + Mean(pixels, area, x + 2)) / 2);
        }
    }

    /// The difference of column `x`, in raw units.
    double At(int x) const { return differences_.at(static_cast<std::size_t>(x - first_)); }

    /// The largest difference, without that of column `defect` and those of its neighbours.
    double LargestBut(int defect) const {
        double largest = 0;
        for (std::size_t i = 0; i < differences_.size(); ++i) {
            const int away = std::abs(first_ + static_cast<int>(i) - defect);
            largest = away == 0 || away == 2 ? largest : std::max(largest, std::abs(differences_[i]));
        }
        return largest;
    }

    double Deviation() const {
        double squares = 0;
        for (const double difference : differences_) {
            squares += difference * difference;
        }
        return std::sqrt(squares / static_cast<double>(differences_.size()));
    }

  private:
    static double Mean(const std::vector<std::uint16_t>& pixels, const samples::Patch& area, int x) {
        double sum = 0;
        int rows = 0;
        for (int y = (area.y + 5) / 2 * 2; y < area.y + area.height - 4; y += 2) {
            sum += pixels[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)];
            ++rows;
        }
        return sum / rows;
    }

    int first_;
    std::vector<double> differences_;
};

/// The step of the scene's grey wedge that column `x` runs through.
samples::Patch WedgeStep(int x) {
    const samples::Scene scene(kWidth, kHeight);
    const auto& steps = scene.WedgePatches();
    return *std::ranges::find_if(
        steps, [x](const samples::Patch& step) { return step.x <= x && x < step.x + step.width; });
}

/// The complete workflow of a photographer: list the defects, make a reference from a dark exposure at ISO
/// 160, and correct a picture at ISO 2500 with both.
TEST(SensorFix, RemovesStripesAndDefectsFromTheSampleScene) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Lines(kDefects));
    const support::TempFolder dark;
    ASSERT_EQ(samples::WriteCard(dark.path().string(), {.pairs = 0, .dark = true}), "");
    ASSERT_EQ(samples::WriteCard(camera.card.folder(), {.pairs = 1, .iso = 2500}), "");
    ASSERT_EQ(camera.Run({"-i", dark.path().string(), "-sd"}).status, 0);

    ASSERT_EQ(camera.Run({}).status, 0);
    const auto plain = camera.Pixels("L1000001");
    ASSERT_EQ(camera.Run({"-s", "-r"}).status, 0);
    const auto fixed = camera.Pixels("L1000001");

    // In the black step only read noise remains: 2.5 at ISO 160, 16 times that here, averaged over its rows;
    // taking the difference from two neighbours adds half of its variance.
    const samples::Patch black = WedgeStep(200);
    const double rows = (black.height - 8) / 2.0;
    const double noise_floor = 2.5 * 16 * std::sqrt(1.5 / rows);
    const double before = Stripes(plain, black).Deviation();
    const double after = Stripes(fixed, black).Deviation();
    RecordProperty("stripes_before", std::to_string(before));
    RecordProperty("stripes_after", std::to_string(after));
    RecordProperty("noise_floor", std::to_string(noise_floor));
    EXPECT_GT(before, 2.5 * noise_floor);
    EXPECT_NEAR(after, noise_floor, 0.2 * noise_floor);

    for (const int defect : {1203, 2750}) {
        const samples::Patch step = WedgeStep(defect);
        EXPECT_GT(std::abs(Stripes(plain, step).At(defect)), 1000) << defect;
        const Stripes stripes(fixed, step);
        EXPECT_LE(std::abs(stripes.At(defect)), stripes.LargestBut(defect)) << defect;
    }
}

TEST(SensorFix, RepairsOnlyTheListedPixels) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Lines(kDefects));
    camera.card.AddPair("A");
    ASSERT_EQ(camera.Run({"-s"}).status, 0);
    // None of the neighbours is a defect itself.
    EXPECT_TRUE(camera.Pixels("A") == ExpectedPixels([](int x, int y) {
                    if (!IsDefect(x, y)) {
                        return int{TestPixel(x, y)};
                    }
                    const int sides = TestPixel(x - 2, y) + TestPixel(x + 2, y);
                    if (x % 2 == y % 2) {
                        return sides / 2;
                    }
                    const int upper = y == 0 ? 0 : TestPixel(x - 1, y - 1) + TestPixel(x + 1, y - 1);
                    const int lower = y == 2645 ? 0 : TestPixel(x - 1, y + 1) + TestPixel(x + 1, y + 1);
                    const int weight = y == 0 || y == 2645 ? 4 : 2;
                    return (weight * (upper + lower) + sides + 5) / 10;
                }));
}

TEST(SensorTest, PaintsOnlyTheListedPixelsWhite) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Lines(kDefects));
    camera.card.AddPair("A");
    ASSERT_EQ(camera.Run({"-st"}).status, 0);
    EXPECT_TRUE(camera.Pixels("A") ==
                ExpectedPixels([](int x, int y) { return IsDefect(x, y) ? 16383 : int{TestPixel(x, y)}; }));
}

TEST(SensorFix, SubtractsTheLevelOfEachColumnTimesTheIsoGain) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Levels(5));
    samples::Shot shot;
    shot.iso = 320;
    camera.card.AddPair("A", shot);
    ASSERT_EQ(camera.Run({"-s"}).status, 0);
    ExpectPixels(camera.Pixels("A"),
                 ExpectedPixels([](int x, int y) { return std::max(TestPixel(x, y) - 2 * (x % 5), 0); }));
}

TEST(SensorFix, DithersTheFractionOfALevel) {
    SensorCamera camera;
    std::string levels;
    for (int x = 0; x < kWidth; ++x) {
        levels += "LevelCorrection = 2.25\n";
    }
    support::WriteFile(camera.Database(), Section() + levels);
    camera.AddExposure("A", samples::FlatWords(100));
    ASSERT_EQ(camera.Run({"-s"}).status, 0);
    const auto pixels = camera.Pixels("A");
    const auto less_two = std::ranges::count(pixels, 98);
    const auto less_three = std::ranges::count(pixels, 97);
    EXPECT_EQ(less_two + less_three, kWidth * kHeight);
    EXPECT_NEAR(static_cast<double>(less_three) / (kWidth * kHeight), 0.25, 0.001);
}

/// A dark exposure whose rows read `level` plus the row offset of each half.
std::vector<std::uint16_t> DarkRows(float level, const std::vector<float>& left,
                                    const std::vector<float>& right) {
    samples::SensorOptions sensor;
    sensor.noise = false;
    sensor.column_pattern = 0;
    sensor.defects.clear();
    sensor.dark_level = level;
    sensor.left_row_offsets = left;
    sensor.right_row_offsets = right;
    return samples::DarkWords(sensor);
}

template <typename Offset>
std::vector<float> RowOffsets(Offset offset) {
    std::vector<float> offsets(kHeight);
    for (int y = 0; y < kHeight; ++y) {
        offsets[static_cast<std::size_t>(y)] = static_cast<float>(offset(y));
    }
    return offsets;
}

/// The estimated offsets of rows that read `level` + `offsets`, if the even rows are not darker: odd rows are
/// measured, even rows are interpolated, and the mean is subtracted.
std::vector<double> Estimate(const std::vector<float>& offsets) {
    std::vector<double> estimate(offsets.begin(), offsets.end());
    estimate[0] = estimate[1];
    double sum = estimate[0] + estimate[kHeight - 1];
    for (std::size_t y = 2; y < kHeight; y += 2) {
        estimate[y] = (estimate[y - 1] + estimate[y + 1]) / 2;
        sum += estimate[y - 1] + estimate[y];
    }
    for (double& value : estimate) {
        value -= sum / kHeight;
    }
    return estimate;
}

/// The rows get brighter from the middle of the picture towards both ends, so they are the same in reverse
/// order, in which the right half is corrected.
TEST(RowOffsets, AreRemovedFromBothHalvesTogetherWithTheColumnLevels) {
    const auto offsets = RowOffsets([](int y) { return std::abs(2 * y - 2645) / 32; });
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Levels(3));
    camera.AddExposure("A", DarkRows(10, offsets, offsets));
    ASSERT_EQ(camera.Run({"-sb"}).status, 0);
    const auto estimate = Estimate(offsets);
    const auto expected = ExpectedPixels([&](int x, int y) {
        const double taken = x % 3 + estimate[static_cast<std::size_t>(x < 1984 ? y : 2645 - y)];
        return 10 + static_cast<int>(offsets[static_cast<std::size_t>(y)]) - static_cast<int>(taken);
    });
    const auto pixels = camera.Pixels("A");
    EXPECT_TRUE(pixels == expected);
    // The darkest and the brightest row differed by 82 raw units; rounding and the column levels remain.
    const auto [darkest, brightest] = std::ranges::minmax(pixels);
    EXPECT_LE(brightest - darkest, 4);
}

TEST(RowOffsets, OfTheRightHalfComeFromTheMirroredRow) {
    const auto offsets = RowOffsets([](int y) { return y / 40; });
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Levels(1));
    camera.AddExposure("A", DarkRows(10, {}, offsets));
    ASSERT_EQ(camera.Run({"-sb"}).status, 0);
    const auto estimate = Estimate(offsets);
    EXPECT_TRUE(camera.Pixels("A") == ExpectedPixels([&](int x, int y) {
                    const auto row = static_cast<std::size_t>(y);
                    return x < 1984 ? 10
                                    : 10 + static_cast<int>(offsets[row]) -
                                          static_cast<int>(estimate[kHeight - 1 - row]);
                }));
}

/// In this case rows 0, 1, 2, ... are measured for rows 0, 2, 4, ..., at half their level. Here these
/// measurements are almost equal, so nothing remains after subtracting their mean. Only the last offset,
/// which was 0, becomes minus the mean of 40: in the last row of the left half and, mirrored, in the first
/// row of the right half.
TEST(RowOffsets, WithDarkerEvenRowsLeaveTheLastOneUnmeasured) {
    const auto offsets = RowOffsets([](int y) { return y % 2; });
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Levels(1));
    camera.AddExposure("A", DarkRows(80, offsets, offsets));
    ASSERT_EQ(camera.Run({"-sb"}).status, 0);
    EXPECT_TRUE(camera.Pixels("A") == ExpectedPixels([](int x, int y) {
                    const bool unmeasured = x < 1984 ? y == 2645 : y == 0;
                    return 80 + y % 2 + (unmeasured ? 40 : 0);
                }));
}

TEST(RowOffsets, OfAPictureWithoutDarkPixelsChangeNothing) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Levels(3));
    camera.AddExposure("A", samples::FlatWords(1000));
    ASSERT_EQ(camera.Run({"-sb"}).status, 0);
    EXPECT_TRUE(camera.Pixels("A") == ExpectedPixels([](int, int) { return 1000; }));
}

}  // namespace
