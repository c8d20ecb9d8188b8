// SPDX-License-Identifier: MIT
// Converted pairs with sensor options.
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "batch/proof/dng_proof.h"
#include "batch/proof/pixel_proof.h"
#include "samples/sample_databases.h"
#include "samples/sensor_dump.h"
#include "tests/batch_proof/made_dng.h"
#include "tests/support/files.h"

namespace {

/// A database of the sample camera in which every column has `level`, and column 100 is defective from row 10
/// to row 2000.
std::string Database(const std::string& level,
                     const std::string& lines = "Line=100\nLine=10\nLine=100\nLine=2000\n") {
    std::string text = "[3106091]\n" + lines;
    for (int x = 0; x < samples::kSensorWidth; ++x) {
        text += "LevelCorrection=" + level + "\n";
    }
    return text;
}

void AskFor(RunSettings& settings) {
    settings.sensor_fix = true;
    settings.dark_field_fix = true;
}

TEST(SensorProof, AcceptsWhatEachOptionMakes) {
    const std::vector<std::function<void(RunSettings&)>> options = {
        [](RunSettings&) {},
        [](RunSettings& settings) { settings.preview = true; },
        [](RunSettings& settings) { settings.pixel_line_test = true; },
        [](RunSettings& settings) { settings.row_offset_estimation = true; },
        [](RunSettings& settings) { settings.black_level_given = true; },
        [](RunSettings& settings) { settings.dark_field_creation = true; },
        [](RunSettings& settings) {
            settings.dark_field_creation = true;
            settings.row_offset_estimation = true;
        }};
    samples::Shot shot;
    for (const std::uint16_t iso : std::vector<std::uint16_t>{160, 2500}) {
        shot.iso = iso;
        MadeDng made;
        made.WritePair(shot);
        for (const auto& option : options) {
            made.WriteSensorDatabase(samples::SensorDatabase(shot.serial_number, samples::SensorOptions()));
            made.settings = {};
            AskFor(made.settings);
            option(made.settings);
            made.Make();
            EXPECT_EQ(made.Check(), "");
        }
    }
}

TEST(SensorProof, AcceptsWhatADatabaseWithoutUseLeavesAlone) {
    for (const std::string& text :
         {std::string(), std::string("[1]\nLine=1\n"),
          std::string("[3106091]\nLine=100\nLine=10\nLine=100\nLine=2000\nLine=7\n"),
          std::string("[3106091]\nLevelCorrection=3\nLevelCorrection=4\n")}) {
        MadeDng made;
        AskFor(made.settings);
        made.WritePair();
        if (!text.empty()) {
            made.WriteSensorDatabase(text);
        }
        made.Make();
        EXPECT_EQ(made.Check(), "") << text;
        made.SetPixel(9, 9, 1);
        EXPECT_EQ(made.Check(), "does not match its RAW file: pixel 9 of row 9 is 1 instead of 1323") << text;
    }
}

TEST(SensorProof, LetsAPixelLoseItsLevelOrOneMore) {
    MadeDng made;
    AskFor(made.settings);
    made.WritePair();
    made.WriteSensorDatabase(Database("2.5"));
    made.Make();
    const auto with_value = [&](std::uint16_t value) {
        made.SetPixel(9, 9, value);
        return made.Check();
    };
    EXPECT_EQ(with_value(1322),
              "does not match its RAW file: pixel 9 of row 9 is 1322 instead of 1320 or 1321");
    EXPECT_EQ(with_value(1321), "");
    EXPECT_EQ(with_value(1320), "");
    EXPECT_EQ(with_value(1319),
              "does not match its RAW file: pixel 9 of row 9 is 1319 instead of 1320 or 1321");
}

TEST(SensorProof, AWholeLevelLeavesNoChoice) {
    MadeDng made;
    AskFor(made.settings);
    made.WritePair();
    made.WriteSensorDatabase(Database("2"));
    made.Make();
    EXPECT_EQ(made.Check(), "");
    made.SetPixel(9, 9, 1320);
    EXPECT_EQ(made.Check(), "does not match its RAW file: pixel 9 of row 9 is 1320 instead of 1321");
}

TEST(SensorProof, ComparesListedColumnsToo) {
    MadeDng made;
    AskFor(made.settings);
    made.WritePair();
    made.WriteSensorDatabase("[3106091]\nLine=100\nLine=10\nLine=100\nLine=2000\n");
    made.Make();
    EXPECT_EQ(made.Check(), "");
    const auto value = made.Pixel(100, 500);
    made.SetPixel(100, 500, static_cast<std::uint16_t>(value + 1));
    EXPECT_EQ(made.Check(), "does not match its RAW file: pixel 100 of row 500 is " +
                                std::to_string(value + 1) + " instead of " + std::to_string(value));
}

TEST(SensorProof, RowOffsetsAreComparedExactly) {
    MadeDng made;
    AskFor(made.settings);
    made.settings.row_offset_estimation = true;
    made.WritePair();
    made.WriteSensorDatabase(Database("2.5"));
    made.Make();
    EXPECT_EQ(made.Check(), "");
    made.SetPixel(3967, 2645, static_cast<std::uint16_t>(made.Pixel(3967, 2645) ^ 1U));
    EXPECT_EQ(made.Check().substr(0, 50), "does not match its RAW file: pixel 3967 of row 264");
}

TEST(SensorProof, ADarkFrameTakesThePlaceOfTheLevels) {
    MadeDng made;
    AskFor(made.settings);
    made.settings.black_level_given = true;
    made.WritePair();
    made.WriteDarkFrame(100);
    made.WriteSensorDatabase(Database("2.5"));
    made.Make();
    EXPECT_EQ(made.Pixel(9, 9), 1223);
    EXPECT_EQ(made.Check(), "");
    made.SetPixel(9, 9, 1221);
    EXPECT_EQ(made.Check(), "does not match its RAW file: pixel 9 of row 9 is 1221 instead of 1223");
}

TEST(SensorProof, SaysWhatCannotBeRead) {
    MadeDng made;
    AskFor(made.settings);
    made.settings.black_level_given = true;
    made.WritePair();
    made.WriteDarkFrame(100);
    made.WriteSensorDatabase(Database("2.5"));
    made.Make();
    std::filesystem::remove(made.folder / "L1.BIA");
    std::filesystem::create_directory(made.folder / "L1.BIA");
    EXPECT_EQ(made.Check(), "cannot be compared with L1.BIA, which cannot be read");
    std::filesystem::remove(made.folder / "L1.RAW");
    EXPECT_EQ(made.Check(), "cannot be compared with L1.RAW, which cannot be read");
}

TEST(DitheredLevels, AreTheTwoNumbersThatALevelAndItsDitherGive) {
    std::vector<float> correction(samples::kSensorWidth, 2.5F);
    correction[1] = 0;
    correction[2] = 3;
    correction[3] = 0.125F;
    correction[4] = -0.5F;
    const auto levels = DitheredLevels(correction, samples::kSensorWidth, 320);
    const std::vector<std::uint16_t> least(levels.least.begin(), levels.least.begin() + 5);
    const std::vector<std::uint16_t> most(levels.most.begin(), levels.most.begin() + 5);
    EXPECT_EQ(least, (std::vector<std::uint16_t>{5, 0, 6, 0, 65535}));
    EXPECT_EQ(most, (std::vector<std::uint16_t>{5, 0, 6, 1, 0}));
}

TEST(DitheredLevels, OfTheCroppedFrameBeginAtColumn23) {
    std::vector<float> correction(samples::kSensorWidth);
    correction[23] = 1;
    correction[22 + samples::kCroppedWidth] = 2;
    const auto levels = DitheredLevels(correction, samples::kCroppedWidth, 160);
    EXPECT_EQ(levels.least.front(), 1);
    EXPECT_EQ(levels.least.back(), 2);
    EXPECT_EQ(levels.least.size(), 3920U);
}

TEST(DitheredLevels, AreNoneOfAnotherFrameOrOfTooFewColumns) {
    EXPECT_TRUE(DitheredLevels(std::vector<float>(3968), 3967, 160).empty());
    EXPECT_TRUE(DitheredLevels(std::vector<float>(3967), 3968, 160).empty());
    EXPECT_TRUE(DitheredLevels(std::vector<float>(3942), 3920, 160).empty());
    EXPECT_FALSE(DitheredLevels(std::vector<float>(3943), 3920, 160).empty());
}

}  // namespace
