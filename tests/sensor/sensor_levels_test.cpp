// SPDX-License-Identifier: MIT
#include <vector>

#include <gtest/gtest.h>

#include "input/read_input_data.h"
#include "sensor/sensdb.h"
#include "tests/sensor/sensor_oracle.h"

namespace {

using Levels = std::vector<float>;

ReadInputData RecordOf(const oracle::Frame& frame) {
    ReadInputData image;
    image.Exif.SerialNumber = 5;
    image.Width = frame.width;
    image.Height = frame.height;
    image.ImageSize = frame.width * frame.height;
    image.ImageData = frame.pixels;
    return image;
}

TEST(CalcSensLevel, LevelsAreTheWrappedSumsAboveTheSmallest) {
    sensdb sensors("");
    sensors.Camera(5) = {{1, 2, 1, 4}, Levels(10, 99)};
    // The sums are 80000, which wraps to 14464, 60000 and 15100.
    ReadInputData image = RecordOf({3, 2, {40000, 30000, 100, 40000, 30000, 15000}});
    EXPECT_EQ(sensors.CalcSensLevel(&image), 0);
    EXPECT_EQ(sensors.Camera(5).LevelCorrection, (Levels{0, 22768, 318}));
    EXPECT_EQ(sensors.Camera(5).Line, (std::vector<std::uint16_t>{1, 2, 1, 4}));
}

TEST(CalcSensLevel, LevelsAreDividedByTheNumberOfRows) {
    sensdb sensors("");
    ReadInputData image = RecordOf({2, 4, {10, 10, 10, 11, 10, 10, 10, 12}});
    EXPECT_EQ(sensors.CalcSensLevel(&image), 0);
    EXPECT_EQ(sensors.Camera(5).LevelCorrection, (Levels{0, 0.75F}));
}

TEST(CalcSensLevel, LevelsEqualThePlainLoop) {
    sensdb sensors("");
    for (const std::uint32_t range : {40U, 16384U, 65536U}) {
        const oracle::Frame frame = oracle::RandomFrame(3968, 300, 1, 0, range);
        ReadInputData image = RecordOf(frame);
        EXPECT_EQ(sensors.CalcSensLevel(&image), 0);
        EXPECT_EQ(sensors.Camera(5).LevelCorrection, oracle::ColumnLevels(frame));
    }
}

}  // namespace
