// SPDX-License-Identifier: MIT
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "sensor/sensdb.h"
#include "sensor/sensor_frame.h"
#include "sensor/sensorfixtools.h"
#include "tests/sensor/sensor_oracle.h"

namespace {

using oracle::Frame;
using List = std::vector<std::uint16_t>;
using Rows = std::pair<int, int>;  ///< the first row, and the row after the last

constexpr unsigned int kSerial = 3106091;

/// Repairs or, with `test`, marks `frame`. Returns the result of fixPixelLine.
int Fix(Frame& frame, const List& list, bool test) {
    sensdb sensors("");
    sensors.Camera(kSerial).Line = list;
    return sensorfixtools().fixPixelLine(kSerial, &frame.pixels, frame.width, frame.height, &sensors, test);
}

Frame Black(int width, int height) {
    return {width, height, List(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))};
}

/// A black frame with rows `first` to `end` - 1 of `column` white.
Frame Marked(int width, int height, int column, Rows rows) {
    Frame frame = Black(width, height);
    for (int y = rows.first; y < rows.second; ++y) {
        frame.At(column, y) = 16383;
    }
    return frame;
}

int Interpolated(Frame frame, int x, int y) {
    sensorfixtools tools;
    EXPECT_EQ(tools.interp(&frame.At(x, y), x, y, frame.width, frame.height), 0);
    return frame.At(x, y);
}

TEST(Interpolation, IsRoundedDiagonallyAndTruncatedHorizontally) {
    const Frame frame = {6, 5, {0,   37,  148, 333, 592, 925,  //
                                91,  133, 249, 439, 703, 41,   //
                                364, 411, 532, 727, 996, 339,  //
                                819, 871, 997, 197, 471, 819,  //
                                456, 513, 644, 849, 128, 481}};
    // Calculated by hand. In row 1, column 0, the upper left neighbour would be before the first pixel; in
    // lower rows, it is the last pixel two rows up.
    const std::vector<std::vector<int>> expected = {{148, 169, 296, 477, 148, 460},
                                                    {130, 439, 381, 87, 490, 439},
                                                    {532, 504, 680, 559, 532, 472},
                                                    {457, 197, 629, 845, 579, 197},
                                                    {644, 811, 292, 687, 644, 456}};
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            EXPECT_EQ(Interpolated(frame, x, y),
                      expected.at(static_cast<std::size_t>(y)).at(static_cast<std::size_t>(x)))
                << x << ", " << y;
        }
    }
}

TEST(Interpolation, EqualsThePlainLoopForEveryPixelAndSize) {
    for (const auto& [width, height] :
         std::vector<std::pair<int, int>>{{4, 3}, {5, 3}, {5, 4}, {6, 4}, {7, 7}, {8, 6}, {9, 2}, {3, 9}}) {
        const Frame frame = oracle::RandomFrame(width, height, 1, 0, 65536);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                Frame expected = frame;
                oracle::Interpolate(expected, x, y);
                EXPECT_EQ(Interpolated(frame, x, y), expected.At(x, y))
                    << width << " x " << height << ": " << x << ", " << y;
            }
        }
    }
}

TEST(Interpolation, OfTheLargestValuesStaysInRange) {
    const Frame frame = {8, 6, List(48, 65535)};
    EXPECT_EQ(Interpolated(frame, 4, 3), 65535);
    EXPECT_EQ(Interpolated(frame, 3, 3), 65535);
    EXPECT_EQ(Interpolated(frame, 4, 5), 65535);
    // (8 x 65535 + 65535 + 5) / 10: one neighbour fewer, the same divisor.
    EXPECT_EQ(Interpolated(frame, 0, 3), 58982);
    EXPECT_EQ(Interpolated(frame, 7, 0), 58982);
}

TEST(Interpolation, OfAnImageTooSmallForAnyNeighbourKeepsThePixel) {
    EXPECT_EQ(Interpolated({1, 1, {77}}, 0, 0), 77);
}

TEST(PixelLineFix, MarksExactlyTheListedPixels) {
    struct Case {
        const char* name;
        int width;
        List list;
        int column;
        Rows rows;
    };
    constexpr int full = sensor_frame::kFullWidth;
    constexpr int cropped = sensor_frame::kCroppedWidth;
    const std::vector<Case> cases = {
        {"end row exclusive", full, {100, 3, 100, 7}, 100, {3, 7}},
        {"full frame not moved", full, {124, 10, 124, 5000}, 124, {10, 20}},
        {"other widths not moved", 200, {124, 10, 124, 15}, 124, {10, 15}},
        {"cropped frame, end row clamped", cropped, {124, 10, 124, 5000}, 100, {4, 20}},
        {"cropped frame, end row not moved", cropped, {124, 10, 124, 15}, 100, {4, 15}},
        {"cropped frame, first row above the image", cropped, {124, 5, 124, 15}, 100, {0, 0}},
        {"cropped frame, first row of the image", cropped, {124, 6, 124, 15}, 100, {0, 15}},
        {"cropped frame, column before the image", cropped, {23, 6, 23, 15}, 0, {0, 0}},
        {"cropped frame, first column", cropped, {24, 6, 24, 15}, 0, {0, 15}},
        {"cropped frame, column behind the image", cropped, {3944, 6, 3944, 15}, 0, {0, 0}},
        {"column outside", full, {3968, 0, 3968, 15}, 0, {0, 0}},
        {"rows outside", full, {5, 20, 5, 65535}, 0, {0, 0}},
        {"no rows", full, {5, 9, 5, 3}, 0, {0, 0}},
        {"last three values ignored", full, {5, 0, 5, 2, 9, 0, 9}, 5, {0, 2}},
        {"a group outside does not end the list", full, {4000, 0, 4000, 9, 5, 0, 5, 2}, 5, {0, 2}},
    };
    for (const Case& c : cases) {
        constexpr int height = 20;
        Frame frame = Black(c.width, height);
        EXPECT_EQ(Fix(frame, c.list, true), 0) << c.name;
        EXPECT_TRUE(frame.pixels == Marked(c.width, height, c.column, c.rows).pixels) << c.name;
    }
}

TEST(PixelLineFix, StopsAtAGroupOfTwoColumns) {
    Frame frame = Black(sensor_frame::kFullWidth, 8);
    EXPECT_EQ(Fix(frame, {50, 0, 50, 8, 100, 0, 101, 8, 150, 0, 150, 8}, true), 1);
    EXPECT_TRUE(frame.pixels == Marked(frame.width, frame.height, 50, {0, 8}).pixels);
}

TEST(PixelLineFix, ComparesTheColumnsOfAGroupOutsideTheImageToo) {
    Frame frame = Black(16, 8);
    EXPECT_EQ(Fix(frame, {50, 0, 51, 8, 5, 0, 5, 8}, true), 1);
    EXPECT_EQ(frame.pixels, Black(16, 8).pixels);
}

TEST(PixelLineFix, RepairsEachGroupFromTheResultOfTheOneBefore) {
    Frame frame = oracle::RandomFrame(30, 12, 1, 0, 16384);
    Frame expected = frame;
    // Adjacent columns, the edges, and one column twice.
    const std::vector<std::pair<int, Rows>> columns = {{4, {0, 12}}, {6, {2, 9}},  {5, {0, 12}},
                                                       {0, {0, 12}}, {1, {3, 12}}, {29, {0, 12}},
                                                       {28, {1, 2}}, {4, {5, 6}}};
    List list;
    for (const auto& [column, rows] : columns) {
        for (const int value : {column, rows.first, column, rows.second}) {
            list.push_back(static_cast<std::uint16_t>(value));
        }
        for (int y = rows.first; y < rows.second; ++y) {
            oracle::Interpolate(expected, column, y);
        }
    }
    EXPECT_EQ(Fix(frame, list, false), 0);
    EXPECT_EQ(frame.pixels, expected.pixels);
}

TEST(PixelLineFix, LeavesAnUnknownCamerasImage) {
    Frame frame = oracle::RandomFrame(8, 4, 1, 0, 16384);
    const Frame untouched = frame;
    sensdb sensors("");
    EXPECT_EQ(sensorfixtools().fixPixelLine(7, &frame.pixels, 8, 4, &sensors, false), 0);
    EXPECT_EQ(frame.pixels, untouched.pixels);
    EXPECT_TRUE(sensors.Cameras.contains(7)) << "looking up makes an empty record";
}

}  // namespace
