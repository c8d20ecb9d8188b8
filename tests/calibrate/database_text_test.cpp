// SPDX-License-Identifier: MIT
#include "calibrate/database_text.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "sensor/sensdb.h"
#include "sensor/sensorfixtools.h"

namespace {

using database_text::Merge;
using database_text::Read;

const std::vector<float> kLevels = {0.5F, 0, 1.25F};
constexpr const char* kLevelLines =
    "LevelCorrection = 0.500000\nLevelCorrection = 0.000000\nLevelCorrection = 1.250000\n";

std::string Merged(std::string text, std::vector<ListedRows> found) {
    EXPECT_EQ(Merge(text, 42, std::move(found), kLevels), "");
    return text;
}

std::string Group(int column, int first_row, int end_row) {
    std::string text;
    for (const int value : {column, first_row, column, end_row}) {
        text += "Line = " + std::to_string(value) + "\n";
    }
    return text;
}

TEST(DatabaseTextTest, AnEmptyDatabaseGetsTheCamera) {
    EXPECT_EQ(Merged("", {{7, 100, 2646}}), "[42]\n" + Group(7, 100, 2646) + kLevelLines);
}

TEST(DatabaseTextTest, ADefectThatBeginsInTheTopRowsGetsASecondGroup) {
    EXPECT_EQ(Merged("", {{7, 0, 300}}), "[42]\n" + Group(7, 0, 6) + Group(7, 6, 300) + kLevelLines);
    EXPECT_EQ(Merged("", {{7, 0, 6}}), "[42]\n" + Group(7, 0, 6) + kLevelLines);
}

TEST(DatabaseTextTest, OtherCamerasCommentsAndUnknownKeysStayByteForByte) {
    const std::string before = "; mine\n[1]\nLine=3\nColour =  red \n\n";
    const std::string after = "\n# the other body\n[43]\r\nLevelCorrection = 7\nweird\n";
    const std::string text =
        before + "[42]\nOwner = Anna\nLevelCorrection = 9\nLevelCorrection = 8\n; end\n" + after;
    EXPECT_EQ(Merged(text, {{7, 100, 2646}}),
              before + "[42]\n" + Group(7, 100, 2646) + "Owner = Anna\n" + kLevelLines + "; end\n" + after);
}

TEST(DatabaseTextTest, ExistingGroupsStayUnlessAFoundDefectCoversThem) {
    const std::string own = Group(9, 50, 60) + "; bright\n" + Group(7, 110, 2000);
    EXPECT_EQ(Merged("[42]\n" + own, {{7, 120, 2646}}),
              "[42]\n" + Group(7, 110, 2646) + Group(9, 50, 60) + "; bright\n" + kLevelLines);
}

TEST(DatabaseTextTest, ADefectThatAnExistingGroupCoversIsNotListedTwice) {
    const std::string own = Group(7, 100, 2646);
    EXPECT_EQ(Merged("[42]\n" + own, {{7, 900, 2000}}), "[42]\n" + own + kLevelLines);
}

TEST(DatabaseTextTest, ADefectCoversNoGroupOfAnotherColumn) {
    const std::string own = Group(7, 900, 2000);
    EXPECT_EQ(Merged("[42]\n" + own, {{20, 100, 2646}}), "[42]\n" + Group(20, 100, 2646) + own + kLevelLines);
}

TEST(DatabaseTextTest, MergingTwiceChangesNothingMore) {
    const std::string once = Merged("[42]\n\n[43]\nLine = 1\n", {{7, 0, 2646}, {18, 40, 50}, {19, 20, 50}});
    EXPECT_EQ(Merged(once, {{7, 0, 2646}, {18, 40, 50}, {19, 20, 50}}), once);
}

/// Repairs a frame of 100 whose defective columns read 16383. Returns the largest remaining difference from
/// 100.
int LeftAfterRepair(const std::vector<ListedRows>& runs) {
    constexpr int rows = 40;
    std::vector<std::uint16_t> pixels(std::size_t{3968} * rows, 100);
    for (const ListedRows& run : runs) {
        for (int row = run.first_row; row < run.end_row; ++row) {
            pixels[(static_cast<std::size_t>(row) * 3968) + static_cast<std::size_t>(run.column)] = 16383;
        }
    }
    sensdb database("");
    database.Camera(42).Line = database_text::LinesOfRuns(runs);
    EXPECT_EQ(sensorfixtools().fixPixelLine(42, &pixels, 3968, rows, &database, false), 0);
    const auto [least, most] = std::ranges::minmax(pixels);
    return std::max(100 - least, most - 100);
}

TEST(DatabaseTextTest, AdjacentDefectsAreRepairedFromEachOther) {
    EXPECT_LE(LeftAfterRepair({{1285, 3, 40}, {1286, 10, 30}}), 1);
    EXPECT_LE(LeftAfterRepair({{1285, 0, 40}, {1287, 0, 40}}), 2);
    EXPECT_EQ(LeftAfterRepair({{1285, 0, 40}, {1288, 0, 40}}), 0);
}

TEST(DatabaseTextTest, WindowsLineEndsAreKept) {
    EXPECT_EQ(Merged("[1]\r\nLine = 2\r\n", {{7, 100, 200}}),
              "[1]\r\nLine = 2\r\n\r\n[42]\r\nLine = 7\r\nLine = 100\r\nLine = 7\r\nLine = 200\r\n"
              "LevelCorrection = 0.500000\r\nLevelCorrection = 0.000000\r\nLevelCorrection = 1.250000\r\n");
}

TEST(DatabaseTextTest, ReplacedLinesOfWindowsLeaveNoEmptyOnes) {
    EXPECT_EQ(Merged("[42]\r\nLevelCorrection = 9\r\nLevelCorrection = 8\r\n; end\r\n", {}),
              "[42]\r\nLevelCorrection = 0.500000\r\nLevelCorrection = 0.000000\r\n"
              "LevelCorrection = 1.250000\r\n; end\r\n");
}

TEST(DatabaseTextTest, ValuesInCommentsAreNoValues) {
    const std::string comments = "; Line = 1\n#Line = 2\n;LevelCorrection = 3\n";
    EXPECT_EQ(Merged("[42]\n" + comments, {}), std::string("[42]\n") + kLevelLines + comments);
}

TEST(DatabaseTextTest, ALastLineWithoutLineEndGetsOne) {
    EXPECT_EQ(Merged("[42]\nOwner = Anna", {}), std::string("[42]\nOwner = Anna\n") + kLevelLines);
}

TEST(DatabaseTextTest, ValuesThatDoNotComeInFoursAreNotChanged) {
    std::string text = "[42]\nLine = 1\n";
    EXPECT_EQ(Merge(text, 42, {}, kLevels), "the Line values of camera 42 do not come in fours");
    EXPECT_EQ(text, "[42]\nLine = 1\n");
}

TEST(DatabaseTextTest, ASectionThatTheProgramWouldReadDifferentlyIsNotChanged) {
    // The INI library ignores the case of keys, and the program goes by the first spelling.
    std::string text = "[42]\nlevelcorrection = 1\n";
    EXPECT_EQ(Merge(text, 42, {}, kLevels),
              "its section of camera 42 is written in a way that cannot be added to");
    EXPECT_EQ(text, "[42]\nlevelcorrection = 1\n");
}

TEST(DatabaseTextTest, AnEmptyLineAfterLinesThatEndInACarriageReturnStays) {
    const std::string once = Merged("[42]\r\n\n; end\n", {{7, 100, 2646}});
    EXPECT_TRUE(once.ends_with("\n; end\n"));
    const std::string mixed = Merged("; first\r[42]\n\n; end\n", {{7, 100, 2646}});
    EXPECT_EQ(mixed, "; first\r[42]\n" + Group(7, 100, 2646) + kLevelLines + "\n; end\n");
    EXPECT_EQ(Merged(mixed, {{7, 100, 2646}}), mixed);
}

TEST(DatabaseTextTest, AFileThatIsNotTextIsNotChanged) {
    std::string text("a\0b", 3);
    EXPECT_EQ(Merge(text, 42, {}, kLevels), "it is no text");
}

TEST(DatabaseTextTest, ACameraIsReadAsVelmarconReadsIt) {
    const auto values = Read("[0042 x]\nLine = 3 rows\nLine = -1\nline = 7\nLevelCorrection = 1.5 \n", 42);
    EXPECT_EQ(values.lines, (std::vector<std::uint16_t>{3, 65535, 7}));
    EXPECT_EQ(values.levels, std::vector<float>{1.5F});
    EXPECT_TRUE(Read("", 42).levels.empty());
}

}  // namespace
