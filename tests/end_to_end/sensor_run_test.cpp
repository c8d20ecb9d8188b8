// SPDX-License-Identifier: MIT
// Sensor corrections in whole runs: the order of the steps, their output, and the sensor database.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "samples/sensor_dump.h"
#include "tests/end_to_end/card.h"
#include "tests/end_to_end/sensor_camera.h"
#include "tests/support/files.h"
#include "tests/support/test_pair.h"
#include "tiff/tags.h"

namespace {

using end_to_end::ContentsOf;
using end_to_end::ExpectedPixels;
using end_to_end::ExpectPixels;
using end_to_end::Levels;
using end_to_end::Lines;
using end_to_end::Section;
using end_to_end::SensorCamera;
using support::TestPixel;

const std::vector<int> kDefect = {1203, 700, 1203, 2646};

samples::Shot ShotOf(std::uint32_t serial_number) {
    samples::Shot shot;
    shot.serial_number = serial_number;
    return shot;
}

/// Adds a dark exposure in which column x reads 92 + x modulo 4, which are the levels of Levels(4). The
/// 16-bit column sums keep their order when they wrap: 92 and 95 times 2646 are 46824 and 54762 above three
/// times 65536.
void AddDarkExposure(const SensorCamera& camera, const std::string& base, const samples::Shot& shot = {}) {
    auto words = samples::FlatWords(92);
    for (int y = 0; y < samples::kSensorHeight; ++y) {
        for (int x = 0; x < samples::kSensorWidth; ++x) {
            words[samples::WordIndex(x, y)] = static_cast<std::uint16_t>(92 + x % 4);
        }
    }
    camera.AddExposure(base, words, shot);
}

/// The pixels of an exposure of AddDarkExposure after its levels are subtracted.
std::vector<std::uint16_t> EvenDark() {
    return ExpectedPixels([](int, int) { return 92; });
}

/// TestPixel minus the levels of Levels(4).
std::vector<std::uint16_t> WithoutLevels() {
    return ExpectedPixels([](int x, int y) { return std::max(TestPixel(x, y) - x % 4, 0); });
}

void ExpectRun(const support::Outcome& outcome, const std::string& output, int status = 0) {
    EXPECT_EQ(outcome.output, output);
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.errors, "");
}

TEST(SensorRun, NamesItsStepsInOrderBetweenReadingAndWriting) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Lines(kDefect) + Levels(4));
    camera.card.AddPair("A");
    const std::string before =
        "\nImage: A.RAW\n\n"
        "Reading A.JPG...Done!\n"
        "Reading A.RAW...Done!\n"
        "Fixing pixel errors...Done!\n";
    const std::string after =
        "Fixing sensor dark field...Done!\n"
        "Calculating blacklevel...Done!\n"
        "Writing DNG header...Done!\n"
        "Writing image data...Done!\n";
    for (const std::string option : {"-s", "-st", "-sb"}) {
        ExpectRun(camera.Run({option, "-v", "-b", "-r"}), before + after);
    }
    ExpectRun(camera.Run({"-sd", "-v", "-b", "-r"}),
              before +
                  "Calculating new sensor level correction values for Camera 3106091 from image A.RAW.\n" +
                  after);
}

TEST(SensorRun, PrintsOnlyTheHeaderWithoutVerbose) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Lines(kDefect) + Levels(4));
    camera.card.AddPair("A");
    for (const std::string option : {"-s", "-st", "-sb"}) {
        ExpectRun(camera.Run({option, "-r"}), "\nImage: A.RAW\n\n");
    }
}

TEST(SensorRun, FixesTheLensCodeAfterTheSensor) {
    SensorCamera camera;
    support::WriteFile(std::filesystem::path(camera.Database()).replace_filename("lensdb.ini").string(),
                       "[100001]\nMaker = Maker\nModel = Model\nFocalLength = 50\nAperture = 2\n");
    samples::Shot shot;
    shot.lens_code = 0;
    camera.card.AddPair("A", shot);
    ExpectRun(camera.Run({"-s", "-l"}),
              "\nImage: A.RAW\n\n"
              "Error #0014: No Sensor database found.\n"
              "Error #0013: Lens could not be detected.\n");
}

TEST(SensorRun, ReportsAMissingDatabaseForEachImageAndConvertsThem) {
    SensorCamera camera;
    camera.card.AddPair("A");
    camera.card.AddLinkedPair("B", "A");
    const auto order = camera.card.ListingOrder();
    ExpectRun(camera.Run({"-s"}), "\nImage 1 of 2: " + order[0] +
                                      ".RAW\n\nError #0014: No Sensor database found.\n"
                                      "\nImage 2 of 2: " +
                                      order[1] + ".RAW\n\nError #0014: No Sensor database found.\n");
    for (const std::string base : {"A", "B"}) {
        EXPECT_TRUE(camera.Pixels(base) == ExpectedPixels(TestPixel)) << base;
    }
    EXPECT_FALSE(std::filesystem::exists(camera.Database()));
}

TEST(SensorRun, WithAnUnfinishedDefectListOnlyRemovesTheDarkField) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Lines({1203, 700, 1203, 2646, 5, 0}) + Levels(4));
    camera.card.AddPair("A");
    ExpectRun(camera.Run({"-s", "-v"}),
              "\nImage: A.RAW\n\n"
              "Reading A.JPG...Done!\n"
              "Reading A.RAW...Done!\n"
              "No pixel error correction values available for camera No.3106091.\n"
              "Fixing sensor dark field...Done!\n"
              "Writing DNG header...Done!\n"
              "Writing image data...Done!\n");
    ExpectPixels(camera.Pixels("A"), WithoutLevels());
}

TEST(SensorRun, ReportsACameraWithoutLevels) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Lines(kDefect) + Section("42") + Levels(4));
    camera.card.AddPair("A");
    ExpectRun(camera.Run({"-s"}),
              "\nImage: A.RAW\n\nNo dark field correction values available for camera No.3106091.\n");
    support::WriteFile(camera.Database(), Section("42") + Lines(kDefect) + Levels(4));
    ExpectRun(camera.Run({"-s", "-r"}),
              "\nImage: A.RAW\n\nNo dark field correction values available for camera No.3106091.\n");
    EXPECT_TRUE(camera.Pixels("A") == ExpectedPixels(TestPixel));
}

TEST(SensorRun, WithADarkFrameSkipsTheDarkFieldOfThatImageOnly) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Levels(4));
    camera.card.AddPair("A");
    camera.card.AddLinkedPair("B", "A");
    const auto order = camera.card.ListingOrder();
    camera.card.AddDarkFrame(order[0], 92);
    const auto reading = [](const std::string& base) {
        return base + ".RAW\n\nReading " + base + ".JPG...Done!\nReading " + base + ".RAW...Done!\n";
    };
    const std::string writing =
        "Calculating blacklevel...Done!\n"
        "Writing DNG header...Done!\n"
        "Writing image data...Done!\n";
    ExpectRun(camera.Run({"-s", "-b", "120", "-v"}), "\nImage 1 of 2: " + reading(order[0]) + writing +
                                                         "\nImage 2 of 2: " + reading(order[1]) +
                                                         "Fixing sensor dark field...Done!\n" + writing);
    EXPECT_TRUE(camera.Pixels(order[0]) ==
                ExpectedPixels([](int x, int y) { return std::max(TestPixel(x, y) - 92, 0); }));
    ExpectPixels(camera.Pixels(order[1]), WithoutLevels());
    const auto black_level = [&](const std::string& base) {
        return end_to_end::RawIFD(camera.card.Dng(base)).At(tag::kBlackLevel).Number();
    };
    EXPECT_EQ(black_level(order[0]), 0U);
    EXPECT_EQ(black_level(order[1]), 120U);
}

/// The difference between column 1 and its neighbour in a flat picture, which is the level of column 1.
int LevelOfColumn1(const SensorCamera& camera, const std::string& base) {
    const auto pixels = camera.Pixels(base);
    return pixels[0] - pixels[1];
}

TEST(SensorRun, ReadsADatabaseThatChangesDuringTheRun) {
    const auto begin = std::chrono::steady_clock::now();
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Levels(1));
    support::WriteFile(camera.Database() + ".new", Section() + Levels(2));
    camera.AddExposure("P", samples::FlatWords(100));
    for (int i = 0; i < 15; ++i) {
        camera.card.AddLinkedPair("P" + std::to_string(i), "P");
    }
    const auto order = camera.card.ListingOrder();
    const auto has_dng = [&](const std::string& base) {
        return std::filesystem::exists(camera.card / (base + ".DNG"));
    };
    // Waits because a file that was written recently is read for every image anyway.
    std::this_thread::sleep_until(begin + std::chrono::milliseconds(3500));
    std::thread run([&camera] { ASSERT_EQ(camera.Run({"-s"}).status, 0); });
    const auto deadline = begin + std::chrono::seconds(60);
    while (!has_dng(order.front()) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::filesystem::rename(camera.Database() + ".new", camera.Database());
    const bool in_time = !has_dng(order[order.size() - 2]);
    run.join();
    if (!in_time) {
        GTEST_SKIP() << "the run ended before the database was changed";
    }
    EXPECT_EQ(LevelOfColumn1(camera, order.front()), 0);
    EXPECT_EQ(LevelOfColumn1(camera, order.back()), 1);
}

TEST(DarkReference, FromOneExposureIsWrittenAndUsedImmediately) {
    SensorCamera camera;
    AddDarkExposure(camera, "A");
    ExpectRun(camera.Run({"-sd"}),
              "\nImage: A.RAW\n\n"
              "Calculating new sensor level correction values for Camera 3106091 from image A.RAW.\n");
    std::string text = camera.DatabaseText();
    std::erase(text, '\r');
    EXPECT_EQ(text.find(Section() + Levels(4)), text.find('['));
    ExpectPixels(camera.Pixels("A"), EvenDark());
}

TEST(DarkReference, OfTwoExposuresEndsTheRunWithError15) {
    SensorCamera camera;
    support::WriteFile(camera.Database(), Section() + Levels(4));
    camera.card.AddPair("A");
    camera.card.AddLinkedPair("B", "A");
    const auto before = ContentsOf(camera.card.folder());
    const std::string database = camera.DatabaseText();
    ExpectRun(camera.Run({"-sd"}),
              "\nImage 1 of 2: " + camera.card.ListingOrder()[0] +
                  ".RAW\n\nError #0015: Too many images for creating sensor level reference.\n",
              15);
    EXPECT_TRUE(ContentsOf(camera.card.folder()) == before);
    EXPECT_EQ(camera.DatabaseText(), database);
}

TEST(DarkReference, IsNotMadeFromAPictureWhoseDngExists) {
    SensorCamera camera;
    AddDarkExposure(camera, "A");
    support::WriteFile(camera.card / "A.DNG", "kept");
    ExpectRun(camera.Run({"-sd"}), "\nImage: A.RAW\n\nFile A.DNG already exists!\n");
    EXPECT_FALSE(std::filesystem::exists(camera.Database()));
}

TEST(DarkReference, KeepsOtherCamerasAndTheDefectList) {
    SensorCamera camera;
    const std::string other = Lines({7, 1, 7, 9}) + "LevelCorrection = 0.500000\n";
    support::WriteFile(camera.Database(),
                       "; mine\n" + Section() + Levels(7) + Lines(kDefect) + Section("42") + other);
    AddDarkExposure(camera, "A");
    ASSERT_EQ(camera.Run({"-sd"}).status, 0);
    std::string text = camera.DatabaseText();
    std::erase(text, '\r');
    EXPECT_NE(text.find(Section("42") + other), std::string::npos);
    EXPECT_NE(text.find(Section() + Lines(kDefect) + "LevelCorrection = "), std::string::npos);
    EXPECT_EQ(text.find("mine"), std::string::npos);
    EXPECT_EQ(std::ranges::count(text, '['), 2);
}

/// Such a number is signed in the database and in the message about the reference, but not in other messages.
TEST(DarkReference, OfACameraNumberAboveTwoToThe31IsFoundAgain) {
    SensorCamera camera;
    AddDarkExposure(camera, "A", ShotOf(3000000000));
    support::WriteFile(camera.Database(), Section("3000000000") + Lines({1, 2, 1}));
    ExpectRun(camera.Run({"-sd"}),
              "\nImage: A.RAW\n\n"
              "No pixel error correction values available for camera No.3000000000.\n"
              "Calculating new sensor level correction values for Camera -1294967296 from image A.RAW.\n");
    EXPECT_NE(camera.DatabaseText().find("[-1294967296]"), std::string::npos);
    ExpectPixels(camera.Pixels("A"), EvenDark());

    std::filesystem::remove(camera.card / "A.DNG");
    camera.card.AddPair("A", ShotOf(3000000000));
    ExpectRun(camera.Run({"-s"}),
              "\nImage: A.RAW\n\nNo pixel error correction values available for camera No.3000000000.\n");
    ExpectPixels(camera.Pixels("A"), WithoutLevels());
    support::WriteFile(camera.Database(), Section("-1294967296") + Lines(kDefect));
    ExpectRun(camera.Run({"-s", "-r"}),
              "\nImage: A.RAW\n\nNo dark field correction values available for camera No.3000000000.\n");
}

TEST(DarkReference, ThatCannotBeWrittenIsReportedAndStillUsed) {
    SensorCamera camera;
    std::filesystem::create_directory(camera.Database());
    AddDarkExposure(camera, "A");
    ExpectRun(camera.Run({"-sd"}),
              "\nImage: A.RAW\n\n"
              "Calculating new sensor level correction values for Camera 3106091 from image A.RAW.\n" +
                  camera.Database() +
                  ": sensor database not written: the file that is there could not be read\n");
    EXPECT_TRUE(std::filesystem::is_directory(camera.Database()));
    EXPECT_EQ(support::Names(std::filesystem::path(camera.Database()).parent_path().string()),
              (std::vector<std::string>{"sensdb.ini"}));
    ExpectPixels(camera.Pixels("A"), EvenDark());
}

}  // namespace
