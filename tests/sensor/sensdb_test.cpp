// SPDX-License-Identifier: MIT
#include "sensor/sensdb.h"

#include <chrono>
#include <filesystem>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "input/read_input_data.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/descriptor_limit.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::uint16_t>;
using Levels = std::vector<float>;
using Contents = std::map<int, std::pair<Lines, Levels>>;

Contents ContentsOf(const sensdb& sensors) {
    Contents contents;
    for (const auto& [serial, camera] : sensors.Cameras) {
        contents[serial] = {camera.Line, camera.LevelCorrection};
    }
    return contents;
}

/// A sensor database in a folder of its own.
class SensdbTest : public testing::Test {
  protected:
    const std::string& path() const { return sensors_.DatabaseFile; }

    void WriteText(std::string_view text) const { support::WriteFile(path(), text); }

    std::string Text() const {
        const auto bytes = support::ReadFile(path());
        return {bytes.begin(), bytes.end()};
    }

    /// Returns what WriteSensData prints. Expects it to fail if and only if it prints anything.
    std::string Write() {
        int result = 0;
        std::string printed = support::CaptureStdout([&] { result = sensors_.WriteSensData(); });
        EXPECT_EQ(result < 0, !printed.empty()) << printed;
        return printed;
    }

    std::string NotWritten(std::string_view reason) const {
        return path() + ": sensor database not written: " + std::string(reason) + "\n";
    }

    /// Waits until the file is so old that its times show every change.
    void Settle() const {
        std::error_code unknown;
        while (!StateOf(path(), unknown)->Settled()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
    }

    support::TempFolder folder_;
    sensdb sensors_ = sensdb(folder_.prefix());
};

TEST(Sensdb, BeginsEmptyWithTheFileOfItsFolder) {
    EXPECT_EQ(sensdb("folder/").DatabaseFile, "folder/sensdb.ini");
    EXPECT_EQ(sensdb("").DatabaseFile, "sensdb.ini");
    EXPECT_TRUE(sensdb("folder/").Cameras.empty());
}

struct ReadingCase {
    const char* name;
    const char* text;
    Contents expected;
};

const std::vector<ReadingCase> kReadingCases = {
    {"ValuesInFileOrder",
     "[7]\nLine = 9\nLevelCorrection = 1.5\nLine = 3\nLine = 7\nLevelCorrection = 0.25\n",
     {{7, {{9, 3, 7}, {1.5F, 0.25F}}}}},
    {"LeadingZeros", "[0042]\nLine = 1\n", {{42, {{1}, {}}}}},
    {"NamesThatAreNoNumbers", "[abc]\nLine = 1\n", {{0, {{1}, {}}}}},
    {"NumericPrefixOfAName", "[12x3]\nLine = 1\n", {{12, {{1}, {}}}}},
    {"NegativeNames", "[-5]\nLine = 1\n", {{-5, {{1}, {}}}}},
    {"SectionsWithoutKeys", "[1]\n[2]\nLine = 1\n[3]\n", {{2, {{1}, {}}}}},
    {"SectionsOfUnknownKeys", "[1]\nColumn = 5\n", {{1, {}}}},
    {"KeysInOtherCase",
     "[1]\nline = 5\nLEVELCORRECTION = 5\n[2]\nLINE = 5\nlevelcorrection = 1\n",
     {{1, {}}, {2, {}}}},
    {"SpellingsOfOneKeyAsTheFirst",
     "[1]\nLine = 5\nLINE = 6\n[2]\nline = 5\nLine = 6\n",
     {{1, {{5, 6}, {}}}, {2, {}}}},
    {"LongerKeys", "[1]\nLine2 = 5\nLineX = 5\nLevelCorrections = 5\n", {{1, {}}}},
    {"NumericPrefixes",
     "[1]\nLine = 12abc\nLine = abc\nLine = 7.9\nLevelCorrection = 1.5V\nLevelCorrection = "
     "x\nLevelCorrection = -2e1\n",
     {{1, {{12, 0, 7}, {1.5F, 0, -20}}}}},
    {"LowBitsOfLines",
     "[1]\nLine = 65535\nLine = 65536\nLine = 70000\nLine = -1\n",
     {{1, {{65535, 0, 4464, 65535}, {}}}}},
    {"LevelsBeyondAFloat",
     "[1]\nLevelCorrection = 1e300\nLevelCorrection = -1e300\n",
     {{1, {{}, {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity()}}}}},
    // Sections come in the order of their names, whatever their order in the file.
    {"TheLastOfOneNumber", "[42]\nLine = 1\nLevelCorrection = 1\n[0042]\nLine = 2\n", {{42, {{1}, {1}}}}},
    {"TheLastOfOneNumberInOrder", "[0042]\nLine = 2\n[42]\nLevelCorrection = 1\n", {{42, {{}, {1}}}}},
    {"OneSectionInTwoPieces",
     "[1]\nLine = 1\n[2]\nLine = 2\n[1]\nLine = 3\n",
     {{1, {{1, 3}, {}}}, {2, {{2}, {}}}}},
    {"NothingInAnEmptyFile", "", {}},
    {"NoComments", "; Line = 1\n[1]\n# Line = 2\nLine = 3\n; Line = 4\n", {{1, {{3}, {}}}}},
    {"AByteOrderMark", "\xEF\xBB\xBF[1]\nLine = 3\nLevelCorrection = 0.5\n", {{1, {{3}, {0.5F}}}}},
    {"LoneCarriageReturns",
     "[1]\rLine = 3\rLevelCorrection = 0.5\r[2]\rLine = 4\r",
     {{1, {{3}, {0.5F}}}, {2, {{4}, {}}}}},
    {"NamesOverTwoLines",
     "[\n1]\nLevelCorrection = 0.5\n[2\nLine = 4\n",
     {{1, {{}, {0.5F}}}, {2, {{4}, {}}}}},
    {"LevelsBeforeAnySection",
     "LevelCorrection = 1\n[1]\nLevelCorrection = 2\n",
     {{0, {{}, {1}}}, {1, {{}, {2}}}}},
    {"WindowsLineEnds", "[1]\r\nLine = 3\r\nLevelCorrection = 0.5\r\n", {{1, {{3}, {0.5F}}}}},
};

class SensdbReading : public SensdbTest, public testing::WithParamInterface<ReadingCase> {};

TEST_P(SensdbReading, Takes) {
    WriteText(GetParam().text);
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(ContentsOf(sensors_), GetParam().expected);
}

/// Loads one camera after the other, known or not.
TEST_P(SensdbReading, TakesTheSameOfOneCamera) {
    WriteText(GetParam().text);
    for (const int serial : {0, 1, 2, 3, 7, 12, 42, -5}) {
        sensdb sensors(folder_.prefix());
        EXPECT_EQ(sensors.LoadCamera(static_cast<std::uint32_t>(serial)), 0);
        Contents expected = GetParam().expected;
        std::erase_if(expected, [serial](const auto& camera) { return camera.first != serial; });
        EXPECT_EQ(ContentsOf(sensors), expected) << serial;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, SensdbReading, testing::ValuesIn(kReadingCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(SensdbTest, LoadingReplacesTheCamerasOfTheFileAndKeepsOthers) {
    sensors_.Camera(1).Line = {1};
    sensors_.Camera(2).Line = {2};
    sensors_.Camera(2).LevelCorrection = {2};
    WriteText("[2]\nLine = 5\n[3]\nLine = 6\n");
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(ContentsOf(sensors_), (Contents{{1, {{1}, {}}}, {2, {{5}, {}}}, {3, {{6}, {}}}}));
}

TEST_F(SensdbTest, AMissingFileFailsAndLeavesTheCameras) {
    sensors_.Camera(1).Line = {1};
    EXPECT_LT(sensors_.LoadSensData(), 0);
    EXPECT_EQ(ContentsOf(sensors_), (Contents{{1, {{1}, {}}}}));
}

TEST_F(SensdbTest, AnEditedFileOfTheSameSizeIsReadAtOnce) {
    for (const std::uint16_t value : Lines{1, 2, 3, 4, 5}) {
        WriteText("[1]\nLine = " + std::to_string(value) + "\n");
        EXPECT_EQ(sensors_.LoadSensData(), 0);
        EXPECT_EQ(sensors_.Camera(1).Line, Lines{value});
    }
}

TEST_F(SensdbTest, ARecentFileIsReadAgainEvenIfItsTimesAreTheSame) {
    if (!support::kNoFilesCanBeLeft) {
        GTEST_SKIP() << "the sanitizers open files, too";
    }
    WriteText("[1]\nLine = 1\n");
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    const support::DescriptorLimit no_files(0);
    EXPECT_LT(sensors_.LoadSensData(), 0);
}

TEST_F(SensdbTest, TheSameTextIsParsedOnceWhateverTheTimesOfTheFile) {
    for (const auto time :
         {fs::file_time_type::clock::now(), fs::file_time_type::clock::now() + std::chrono::hours(24)}) {
        WriteText("[1]\nLine = 1\n");
        fs::last_write_time(path(), time);
        EXPECT_EQ(sensors_.LoadSensData(), 0);
        sensors_.Camera(1).Line = {9};
        EXPECT_EQ(sensors_.LoadSensData(), 0);
        EXPECT_EQ(sensors_.Camera(1).Line, Lines{9});
    }
}

TEST_F(SensdbTest, AListOfMorePixelsThanTheSensorHasIsRefusedEachTime) {
    std::string text = "[1]\nLine = 5\n[2]\n";
    for (int i = 0; i < 3968; ++i) {
        text += "Line = 7\nLine = 0\nLine = 7\nLine = 9999\n";
    }
    WriteText(text);
    EXPECT_EQ(sensors_.LoadSensData(), 0);  // every pixel once
    WriteText(text +
              "Line = 3968\nLine = 0\nLine = 3968\nLine = 5\nLine = 8\nLine = 5\nLine = 8\nLine = 5\n");
    EXPECT_EQ(sensors_.LoadSensData(), 0);  // none of these is a pixel
    sensors_.Camera(1).Line = {9};
    const std::string longer = text + "Line = 8\nLine = 0\nLine = 8\nLine = 1\n";
    WriteText(longer);
    EXPECT_LT(sensors_.LoadSensData(), 0);
    EXPECT_LT(sensors_.LoadSensData(), 0);
    EXPECT_EQ(sensors_.Camera(1).Line, Lines{9});
    EXPECT_EQ(Write(), NotWritten("the file that is there could not be read"));
    EXPECT_EQ(Text(), longer);
}

TEST_F(SensdbTest, AnOldUntouchedFileIsNotReadAgain) {
    WriteText("[1]\nLine = 1\n");
    Settle();
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    sensors_.Camera(1).Line = {9};
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(sensors_.Camera(1).Line, Lines{9});
}

TEST_F(SensdbTest, AnOldFileIsReadAgainAfterAnEditThatKeepsSizeAndTime) {
    WriteText("[1]\nLine = 1\n");
    Settle();
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    const auto time = fs::last_write_time(path());
    WriteText("[1]\nLine = 2\n");
    fs::last_write_time(path(), time);
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(sensors_.Camera(1).Line, Lines{2});
}

TEST_F(SensdbTest, AnOldFileIsReadAgainAfterNewLevels) {
    WriteText("[5]\nLevelCorrection = 7\n");
    Settle();
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    ReadInputData image;
    image.Exif.SerialNumber = 5;
    image.Width = image.Height = image.ImageSize = 1;
    image.ImageData = {50};
    sensors_.CalcSensLevel(&image);
    EXPECT_EQ(sensors_.Camera(5).LevelCorrection, Levels{0});
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(sensors_.Camera(5).LevelCorrection, Levels{7});
}

TEST_F(SensdbTest, EachCameraIsLoadedOnceAndKeepsTheOthers) {
    WriteText("[1]\nLine = 1\n[2]\nLine = 2\n[3]\nLine = 3\n");
    EXPECT_EQ(sensors_.LoadCamera(1), 0);
    sensors_.Camera(1).Line = {9};
    sensors_.Camera(3).Line = {8};
    EXPECT_EQ(sensors_.LoadCamera(2), 0);
    EXPECT_EQ(sensors_.LoadCamera(1), 0);
    EXPECT_EQ(ContentsOf(sensors_), (Contents{{1, {{9}, {}}}, {2, {{2}, {}}}, {3, {{8}, {}}}}));
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(ContentsOf(sensors_), (Contents{{1, {{1}, {}}}, {2, {{2}, {}}}, {3, {{3}, {}}}}));
    sensors_.Camera(1).Line = {9};
    EXPECT_EQ(sensors_.LoadCamera(1), 0);
    EXPECT_EQ(sensors_.Camera(1).Line, Lines{9}) << "all were taken";
}

TEST_F(SensdbTest, ACameraOfAnEditedFileIsLoadedAgain) {
    for (const std::uint16_t value : Lines{1, 2, 3}) {
        WriteText("[1]\nLine = " + std::to_string(value) + "\n[2]\nLine = 5\n");
        EXPECT_EQ(sensors_.LoadCamera(1), 0);
        EXPECT_EQ(sensors_.Camera(1).Line, Lines{value});
    }
}

TEST_F(SensdbTest, ACameraIsRefusedBecauseOfTheListOfAnother) {
    std::string text = "[1]\nLine = 5\n[2]\n";
    for (int i = 0; i < 3969; ++i) {
        text += "Line = 7\nLine = 0\nLine = 7\nLine = 9999\n";
    }
    WriteText(text);
    EXPECT_LT(sensors_.LoadCamera(1), 0);
    EXPECT_LT(sensors_.LoadCamera(1), 0);
    EXPECT_TRUE(sensors_.Cameras.empty());
}

TEST_F(SensdbTest, AMissingFileHasNoCamera) {
    EXPECT_LT(sensors_.LoadCamera(1), 0);
    EXPECT_TRUE(sensors_.Cameras.empty());
}

TEST_F(SensdbTest, AFileOfWhichOneCameraWasLoadedIsNotReplacedUntilAllAre) {
    WriteText("[1]\nLine = 1\n[2]\nLine = 2\n");
    EXPECT_EQ(sensors_.LoadCamera(1), 0);
    EXPECT_EQ(Write(), NotWritten("the file that is there could not be read"));
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(Write(), "");
    EXPECT_EQ(Text(), "[1]\nLine = 1\n\n\n[2]\nLine = 2\n");
}

TEST_F(SensdbTest, WritesOneSectionPerCameraInTheOrderOfTheirNumbers) {
    sensors_.Camera(42) = {{100, 0, 100, 2646}, {0, 0.512F, 12.3456789F}};
    sensors_.Camera(7).LevelCorrection = {1};
    sensors_.Camera(9).Line = {65535};
    sensors_.Camera(8) = {};
    EXPECT_EQ(Write(), "");
    EXPECT_EQ(Text(),
              "[7]\nLevelCorrection = 1.000000\n\n\n"
              "[9]\nLine = 65535\n\n\n"
              "[42]\nLine = 100\nLine = 0\nLine = 100\nLine = 2646\n"
              "LevelCorrection = 0.000000\nLevelCorrection = 0.512000\nLevelCorrection = 12.345679\n");
}

TEST_F(SensdbTest, WritingDropsCommentsUnknownKeysAndEmptyCameras) {
    WriteText("; mine\n[1]\nLine = 3\n; more\nColumn = 4\n[2]\nColumn = 4\n");
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(Write(), "");
    EXPECT_EQ(Text(), "[1]\nLine = 3\n");
}

TEST_F(SensdbTest, ReadsWhatItHasWritten) {
    for (int i = 0; i < 3968; ++i) {
        sensors_.Camera(3106091).LevelCorrection.push_back(static_cast<float>(i % 97) / 64);
        sensors_.Camera(17).Line.push_back(static_cast<std::uint16_t>(i * 31));
    }
    EXPECT_EQ(Write(), "");
    sensdb again(folder_.prefix());
    EXPECT_EQ(again.LoadSensData(), 0);
    EXPECT_EQ(ContentsOf(again), ContentsOf(sensors_));
    EXPECT_EQ(support::Names(folder_.path()), std::vector<std::string>{"sensdb.ini"});
}

TEST_F(SensdbTest, AMissingFolderIsReported) {
    sensors_ = sensdb(folder_ / "missing/");
    sensors_.Camera(1).Line = {1};
    EXPECT_EQ(Write(), NotWritten("No such file or directory"));
    EXPECT_EQ(ContentsOf(sensors_), (Contents{{1, {{1}, {}}}}));
}

TEST_F(SensdbTest, AFileThatDoesNotFitOnTheDiskLeavesTheOldOneAndIsReported) {
    WriteText("[1]\nLine = 1\n");
    sensors_.Camera(1).LevelCorrection = Levels(3968, 0.5F);
    const support::FileSizeLimit limit(50000);
    EXPECT_EQ(Write(), NotWritten("File too large"));
    EXPECT_EQ(Text(), "[1]\nLine = 1\n");
    EXPECT_EQ(support::Names(folder_.path()), std::vector<std::string>{"sensdb.ini"});
}

TEST_F(SensdbTest, AFolderInThePlaceOfTheFileIsNotReplaced) {
    fs::create_directory(path());
    EXPECT_LT(sensors_.LoadSensData(), 0);
    EXPECT_EQ(Write(), NotWritten("the file that is there could not be read"));
    EXPECT_TRUE(fs::is_directory(path()));
    EXPECT_EQ(support::Names(folder_.path()), std::vector<std::string>{"sensdb.ini"});
}

TEST_F(SensdbTest, AFileThatCouldNotBeReadIsNotReplacedUntilItCan) {
    if (!support::kNoFilesCanBeLeft) {
        GTEST_SKIP() << "the sanitizers open files, too";
    }
    WriteText("[2]\nLine = 2\n");
    sensors_.Camera(1).Line = {1};
    {
        const support::DescriptorLimit no_files(0);
        EXPECT_LT(sensors_.LoadSensData(), 0);
    }
    EXPECT_EQ(Write(), NotWritten("the file that is there could not be read"));
    EXPECT_EQ(Text(), "[2]\nLine = 2\n");

    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(Write(), "");
    EXPECT_EQ(Text(), "[1]\nLine = 1\n\n\n[2]\nLine = 2\n");
}

TEST_F(SensdbTest, AFileThatMayExistIsNotReplaced) {
    fs::create_symlink("sensdb.ini", path());
    EXPECT_LT(sensors_.LoadSensData(), 0);
    sensors_.Camera(1).Line = {1};
    EXPECT_EQ(Write(), NotWritten("the file that is there could not be read"));
    EXPECT_TRUE(fs::is_symlink(path()));
}

TEST_F(SensdbTest, AFileThatDidNotExistIsMade) {
    EXPECT_LT(sensors_.LoadSensData(), 0);
    sensors_.Camera(1).Line = {1};
    EXPECT_EQ(Write(), "");
    EXPECT_EQ(Text(), "[1]\nLine = 1\n");
}

TEST_F(SensdbTest, ALinkToTheFileStays) {
    support::WriteFile(folder_ / "real.ini", "[1]\nLine = 1\n");
    fs::create_symlink("real.ini", path());
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    sensors_.Camera(1).Line = {2};
    EXPECT_EQ(Write(), "");
    EXPECT_TRUE(fs::is_symlink(path()));
    sensors_.Camera(1).Line = {};
    EXPECT_EQ(sensors_.LoadSensData(), 0);
    EXPECT_EQ(sensors_.Camera(1).Line, Lines{2});
}

}  // namespace
