// SPDX-License-Identifier: MIT
#include "sensor/sensorfixtools.h"

#include <cstdlib>
#include <ctime>
#include <vector>

#include <gtest/gtest.h>

#include "input/read_input_data.h"
#include "sensor/sensdb.h"

namespace {

/// The library's first number after the discarded ones.
int NumberAfterSeed(std::clock_t seed) {
    std::srand(static_cast<unsigned int>(seed));
    int number = 0;
    for (int i = 0; i < 4; ++i) {
        number = std::rand();  // NOLINT(cert-msc30-c,cert-msc50-cpp,concurrency-mt-unsafe)
    }
    return number;
}

TEST(SensorFixTools, SeedTheLibrarysSequenceByTheClockAndDiscardThreeNumbers) {
    const std::clock_t before = std::clock();
    const sensorfixtools tools;
    const std::clock_t after = std::clock();
    const int number = std::rand();  // NOLINT(cert-msc30-c,cert-msc50-cpp,concurrency-mt-unsafe)
    bool found = false;
    for (std::clock_t seed = before; seed <= after; ++seed) {
        found = found || NumberAfterSeed(seed) == number;
    }
    EXPECT_TRUE(found);
}

/// A dark image of camera 5.
ReadInputData Record() {
    ReadInputData record;
    record.Exif.SerialNumber = 5;
    record.Exif.ISOSpeedRatings = 640;
    record.Width = 4;
    record.Height = 2;
    record.ImageSize = 8;
    record.ImageData = {50, 50, 50, 50, 50, 50, 50, 50};
    return record;
}

TEST(SensorFixTools, TakeARecordsCameraAndSizeForItsColumns) {
    sensdb sensors("");
    sensors.Camera(5).Line = {1, 0, 1, 2};
    ReadInputData record = Record();
    EXPECT_EQ(sensorfixtools().fixPixelLine(&record, &sensors, true), 0);
    EXPECT_EQ(record.ImageData, (std::vector<std::uint16_t>{50, 16383, 50, 50, 50, 16383, 50, 50}));
    sensors.Camera(5).Line = {1, 0, 2, 2};
    EXPECT_EQ(sensorfixtools().fixPixelLine(&record, &sensors, true), 1);
}

TEST(SensorFixTools, TakeARecordsCameraSpeedAndSizeForItsDarkLevels) {
    sensdb sensors("");
    sensors.Camera(5).LevelCorrection = {0, 1, 2, 3};
    ReadInputData record = Record();
    EXPECT_EQ(sensorfixtools().fixBlackLevels(&record, &sensors, true), 0);
    EXPECT_EQ(record.ImageData, (std::vector<std::uint16_t>{50, 46, 42, 38, 50, 46, 42, 38}));
    EXPECT_EQ(sensorfixtools().fixBlackLevels(&record, &sensors, false), 0);
    EXPECT_EQ(record.ImageData[1], 46) << "no frame of the sensor";
}

}  // namespace
