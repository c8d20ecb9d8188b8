// SPDX-License-Identifier: MIT
// Databases that are long or have long lines: memory is proportional to the file, and a file larger than 8
// MiB is not read.
#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "tests/end_to_end/card.h"
#include "tests/end_to_end/sensor_camera.h"
#include "tests/support/files.h"
#include "tests/support/program.h"
#include "tiff/tags.h"

namespace {

constexpr std::size_t kLongest = 8UL * 1024 * 1024;

/// `text`, then `line` repeated up to `size` bytes.
std::string Filled(std::string text, std::string_view line, std::size_t size) {
    while (text.size() + line.size() <= size) {
        text += line;
    }
    text.resize(size, '\n');
    return text;
}

/// `size` bytes of the shortest possible sections or keys with distinct names.
std::string DifferentNames(std::size_t size, std::string_view before, std::string_view after) {
    constexpr std::string_view digits = "0123456789abcdefghijklmnopqrstuvwxyz!$%&'()*+,-./:<>?@^_`{|}~";
    constexpr std::size_t count = digits.size();
    std::string text;
    for (std::size_t i = 0; text.size() < size; ++i) {
        text += before;
        for (const std::size_t place : {i, i / count, i / count / count}) {
            text += digits.at(place % count);
        }
        text += i / count / count / count > 0 ? "x" : "";
        text += after;
    }
    text.resize(size, '\n');
    return text;
}

class LongDatabase : public testing::Test {
  protected:
    void SetUp() override { camera_.card.AddPair("A", {.lens_code = 0}); }

    std::string LensDatabase() const {
        return std::filesystem::path(camera_.Database()).replace_filename("lensdb.ini");
    }

    support::Outcome Run(const std::vector<std::string>& arguments) const {
        auto outcome = camera_.Run(arguments);
        EXPECT_EQ(outcome.errors, "");
        return outcome;
    }

    /// Runs with both databases set to `text`, and expects that their memory is at most a fixed number of
    /// bytes per byte of text, in addition to that of an ordinary run.
    void ExpectProportion(const std::string& text) const {
        support::WriteFile(LensDatabase(), text);
        const long with_lenses = Run({"-r"}).peak_kilobytes;
        std::filesystem::rename(LensDatabase(), camera_.Database());
        const auto with_sensors = Run({"-r", "-s"});
        EXPECT_EQ(with_sensors.status, 0);
        std::filesystem::remove(camera_.Database());
#ifndef __SANITIZE_ADDRESS__
        constexpr long most_bytes_per_byte = 80;
        constexpr long a_run = 8 * 21041100 / 1024;  // includes the memory of this test process
        const auto longest = static_cast<long>(text.size() / 1024) * most_bytes_per_byte + a_run;
        EXPECT_LT(with_lenses, longest);
        EXPECT_LT(with_sensors.peak_kilobytes, longest);
#else
        EXPECT_GT(with_lenses, 0);
#endif
    }

    end_to_end::SensorCamera camera_;
};

const std::string kHeader = "\nImage: A.RAW\n\n";
const std::string kNoLenses = "Error #0012: Missing lens database file lensdb.ini.\n";
const std::string kNoSensors = kHeader + "Error #0014: No Sensor database found.\n";

TEST_F(LongDatabase, LensDatabaseIsReadUpToItsSizeLimit) {
    support::WriteFile(LensDatabase(), Filled("[100001]\nMaker = Maker\n", "; a comment\n", kLongest));
    EXPECT_EQ(Run({"-l", "100001", "-r"}).output, kHeader);
    for (const std::size_t size : {kLongest + 1, std::size_t{100} * 1024 * 1024}) {
        support::WriteFile(LensDatabase(), Filled("[100001]\nMaker = Maker\n", "; a comment\n", size));
        const auto outcome = Run({"-l", "-r"});
        EXPECT_EQ(outcome.status, 12);
        EXPECT_EQ(outcome.output, kNoLenses);
        EXPECT_EQ(Run({"-r"}).output, kHeader);
    }
}

TEST_F(LongDatabase, SensorDatabaseIsReadUpToItsSizeLimit) {
    const std::string camera = end_to_end::Section() + end_to_end::Levels(3);
    support::WriteFile(camera_.Database(), Filled(camera, "; a comment\n", kLongest));
    EXPECT_EQ(Run({"-s", "-r"}).output, kHeader);
    for (const std::size_t size : {kLongest + 1, std::size_t{100} * 1024 * 1024}) {
        const std::string text = Filled(camera, "; a comment\n", size);
        support::WriteFile(camera_.Database(), text);
        EXPECT_EQ(Run({"-s", "-r"}).output, kNoSensors);
        EXPECT_NE(Run({"-sd", "-r"}).output.find("the file that is there could not be read\n"),
                  std::string::npos);
        EXPECT_TRUE(camera_.DatabaseText() == text);
    }
}

/// The database holds as many other cameras as there is room for.
TEST_F(LongDatabase, SensorDatabaseIsNotWrittenBeyondItsSizeLimit) {
    std::string text;
    for (int serial = 1; text.size() < kLongest - 50000; ++serial) {
        const auto camera = end_to_end::Section(std::to_string(serial)) + end_to_end::Levels(3);
        text += camera.substr(0, (kLongest - text.size()) / 27 * 27);
    }
    ASSERT_LE(text.size(), kLongest);
    support::WriteFile(camera_.Database(), text);
    const auto outcome = Run({"-sd", "-r"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output,
              kHeader +
                  "Calculating new sensor level correction values for Camera 3106091 from image A.RAW.\n" +
                  camera_.Database() + ": sensor database not written: File too large\n");
    EXPECT_TRUE(camera_.DatabaseText() == text);
}

TEST_F(LongDatabase, OneLongLineIsReadAsOneValue) {
    const std::string maker(3000000, 'm');
    support::WriteFile(LensDatabase(), "[100001]\nModel = " + maker);
    EXPECT_EQ(Run({"-l", "100001", "-r"}).output, kHeader);
    const auto dng = camera_.card.Dng("A");
    const auto exif = dng.ReadIFD(dng.FirstIFD().At(tag::kExifIFD).Number());
    EXPECT_TRUE(exif.At(tag::kLensModel).Text() == maker + '\0');

    support::WriteFile(LensDatabase(), std::string(kLongest, '['));
    EXPECT_EQ(Run({"-l", "-r"}).output, kNoLenses);
    support::WriteFile(camera_.Database(),
                       end_to_end::Section() + "LevelCorrection = 1" + std::string(kLongest / 2, '0'));
    EXPECT_EQ(Run({"-s", "-r"}).output, kHeader);
}

TEST_F(LongDatabase, ManySectionsKeysOrValuesTakeProportionalMemory) {
    constexpr std::size_t size = 2UL * 1024 * 1024;
    ExpectProportion(DifferentNames(size, "[", "]\n"));
    ExpectProportion(DifferentNames(size, "[", "]\na=\n"));
    ExpectProportion("[3106091]\n" + DifferentNames(size, "", "=\n"));
    ExpectProportion(Filled("[3106091]\n", "Line=\n", size));
    ExpectProportion(Filled("[3106091]\n", "LevelCorrection=\n", size));
    ExpectProportion(Filled("[3106091]\n", "Aperture=\n", size));
    ExpectProportion(Filled("[3106091]\n", "a=\n", size));
    ExpectProportion(Filled("", ";\n\n", size));
    ExpectProportion(std::string(size, ' '));
}

TEST_F(LongDatabase, AMillionValuesOfOneKeyAreReadInOrder) {
    // Only the last four have an effect: the others lie outside the image.
    std::string text = Filled(end_to_end::Section(), "Line=\n", 6000000);
    text.resize(text.find_last_of('L'));
    const auto values = static_cast<std::size_t>(std::ranges::count(text, 'L'));
    for (std::size_t i = values; i % 4 != 0; ++i) {
        text += "Line=0\n";
    }
    support::WriteFile(camera_.Database(), text + end_to_end::Lines({124, 0, 124, 5000}));
    EXPECT_EQ(Run({"-st", "-r"}).output,
              kHeader + "No dark field correction values available for camera No.3106091.\n");
    const auto pixels = camera_.Pixels("A");
    EXPECT_EQ(pixels.at(3968 * 1000 + 124), 16383);
}

TEST_F(LongDatabase, MoreDefectsThanPixelsAreRefusedForEachPicture) {
    camera_.card.AddLinkedPair("B", "A");
    support::WriteFile(camera_.Database(),
                       Filled(end_to_end::Section(), "Line=9\nLine=0\nLine=9\nLine=9999\n", kLongest));
    const std::string output = Run({"-s"}).output;
    const std::string error = "\n\nError #0014: No Sensor database found.\n";
    const auto first = output.find(error);
    ASSERT_NE(first, std::string::npos) << output;
    EXPECT_NE(output.find(error, first + 1), std::string::npos) << output;
    EXPECT_TRUE(std::filesystem::exists(camera_.card / "B.DNG"));
}

/// A text in another encoding, or one that a failing disk filled with zeros, is read up to its first zero
/// and never overwritten.
TEST_F(LongDatabase, TextEndsAtANulAndIsNotReplaced) {
    using namespace std::string_literals;
    const std::string camera = end_to_end::Section() + end_to_end::Lines({124, 0, 124, 5000});
    const std::string text = camera + "\0\0\0\n[1]\nLine = 1\n"s;
    support::WriteFile(camera_.Database(), text);
    EXPECT_EQ(Run({"-s", "-v", "-r"}).output.find("Fixing pixel errors...Done!\n"),
              (kHeader + "Reading A.JPG...Done!\nReading A.RAW...Done!\n").size());
    const std::string refusal =
        camera_.Database() + ": sensor database not written: the file that is there could not be read\n";
    EXPECT_NE(Run({"-sd", "-r"}).output.find(refusal), std::string::npos);
    EXPECT_EQ(camera_.DatabaseText(), text);

    support::WriteFile(LensDatabase(), "[100001]\nMaker = Maker\n\0[000001]\n"s);
    EXPECT_EQ(Run({"-l", "100001", "-r"}).output, kHeader);
    support::WriteFile(LensDatabase(), "\xFF\xFE[\0001\0]\0\n\0"s);
    EXPECT_EQ(Run({"-l", "-r"}).output, kNoLenses);
}

}  // namespace
