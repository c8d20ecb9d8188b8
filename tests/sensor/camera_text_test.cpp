// SPDX-License-Identifier: MIT
#include "sensor/camera_text.h"

#include <string>

#include <gtest/gtest.h>

namespace {

TEST(CameraText, LeavesOutTheLevelsOfOtherCameras) {
    EXPECT_EQ(CameraText("LevelCorrection = 9\n[7]\nLine = 1\nLevelCorrection = 2\n"
                         "[8]\nLine = 3\n LevelCorrection\t=4\n\nLevelCorrection=5\n[7]\nLevelCorrection = 6",
                         7),
              "[7]\nLine = 1\nLevelCorrection = 2\n[8]\nLine = 3\n\n[7]\nLevelCorrection = 6");
}

TEST(CameraText, RecognisesCamerasByTheNumberAtTheStartOfAName) {
    EXPECT_EQ(CameraText("[ 0042x]\nLevelCorrection = 1\n[420]\nLevelCorrection = 2\n", 42),
              "[ 0042x]\nLevelCorrection = 1\n[420]\n");
    EXPECT_EQ(CameraText("LevelCorrection = 0\n[x]\nLevelCorrection = 1\n[1]\nLevelCorrection = 2\n", 0),
              "LevelCorrection = 0\n[x]\nLevelCorrection = 1\n[1]\n");
}

TEST(CameraText, KeepsOtherKeysAndComments) {
    for (const std::string line :
         {"levelcorrection = 1\n", "LevelCorrections = 1\n", "LevelCorrection\n", "; LevelCorrection = 1\n",
          "Line = 1\n", "LevelCorrection x = 1\n", "\n", ""}) {
        EXPECT_EQ(CameraText("[1]\n" + line, 2), "[1]\n" + line);
    }
}

TEST(CameraText, ReadsWindowsLineEnds) {
    EXPECT_EQ(CameraText("[1]\r\nLevelCorrection = 1\r\nLine = 2\r\n", 2), "[1]\r\nLine = 2\r\n");
}

TEST(CameraText, ReturnsAnUnusualTextUnchanged) {
    using namespace std::string_literals;
    for (const std::string& text :
         {"\xEF\xBB\xBF[1]\nLevelCorrection = 1\n"s, "[1]\nLevelCorrection = 1\n\0"s,
          "[1]\nLevelCorrection = 1\n[2\n"s, "[1]\nLine = 1\rLevelCorrection = 1\n"s,
          "[1]\rLevelCorrection = 1\n"s, "[1]\nLevelCorrection = 1\n[\n2]\n"s}) {
        EXPECT_EQ(CameraText(text, 2), text);
    }
}

}  // namespace
