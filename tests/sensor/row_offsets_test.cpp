// SPDX-License-Identifier: MIT
#include "sensor/row_offsets.h"

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/sensor/sensor_oracle.h"

namespace {

using oracle::Frame;
using Floats = std::vector<float>;

RowOffsets Estimate(const Frame& frame) {
    return EstimateRowOffsets(frame.pixels, frame.width, frame.height);
}

/// Expects the same numbers; NaN equals NaN.
void ExpectSame(Floats actual, Floats expected) {
    constexpr float mark = std::numeric_limits<float>::max();
    for (Floats* const values : {&actual, &expected}) {
        for (float& value : *values) {
            value = std::isnan(value) ? mark : value;
        }
    }
    EXPECT_EQ(actual, expected);
}

/// The samples of the even rows, at x = 0 and 2, add up to 150, and those of the odd rows, at x = 1 and 3, to
/// 400.
const Frame kEvenRowsDarker = {4,
                               4,
                               {10, 200, 20, 200,  //
                                30, 100, 60, 100,  //
                                40, 200, 80, 200,  //
                                50, 100, 70, 100}};

TEST(RowOffsets, OfDarkerEvenRowsComeFromTheFirstRowsAndTheHalfWidth) {
    ASSERT_TRUE(oracle::EvenRowsAreDarker(kEvenRowsDarker));
    // Rows 0 and 2 have half of the samples of image rows 0 and 1, row 1 has the mean of these, and row 3 has
    // 0. This gives 5, 10, 15, 0 and 10, 20, 30, 0, with the means 7.5 and 15.
    const RowOffsets offsets = Estimate(kEvenRowsDarker);
    EXPECT_EQ(offsets.left, (Floats{-2.5F, 2.5F, 7.5F, -7.5F}));
    EXPECT_EQ(offsets.right, (Floats{-5, 5, 15, -15}));
}

TEST(RowOffsets, OfDarkerEvenRowsIncludeTheLastOfAnOddNumberOfRows) {
    Frame frame = kEvenRowsDarker;
    frame.height = 3;
    frame.pixels.resize(12);
    // 5, 10, 15 and 10, 20, 30.
    const RowOffsets offsets = Estimate(frame);
    EXPECT_EQ(offsets.left, (Floats{-5, 0, 5}));
    EXPECT_EQ(offsets.right, (Floats{-10, 0, 10}));
}

/// The samples of the odd rows, at x = 1, 3 and x = 5, 7, add up to less than those of row 0, which are 100.
const Frame kOddRowsDarker = {8, 4, {100, 0,  100, 0,   100, 0,  100, 0,   //
                                     0,   40, 0,   200, 0,   10, 0,   50,  //
                                     100, 0,  100, 0,   100, 0,  100, 0,   //
                                     0,   60, 0,   80,  0,   50, 0,   100}};

TEST(RowOffsets, OfDarkerOddRowsAreTheMeansOfTheirDarkPixels) {
    ASSERT_FALSE(oracle::EvenRowsAreDarker(kOddRowsDarker));
    // 40, 40, 55, 70 and 30, 30, 40, 50, with the means 51.25 and 37.5.
    const RowOffsets offsets = Estimate(kOddRowsDarker);
    EXPECT_EQ(offsets.left, (Floats{-11.25F, -11.25F, 3.75F, 18.75F}));
    EXPECT_EQ(offsets.right, (Floats{-7.5F, -7.5F, 2.5F, 12.5F}));
}

TEST(RowOffsets, WithEqualRowsAreThoseOfDarkerOddRows) {
    const Frame frame = {4, 4, std::vector<std::uint16_t>(16, 50)};
    const RowOffsets offsets = Estimate(frame);
    EXPECT_EQ(offsets.left, Floats(4));
    EXPECT_EQ(offsets.right, Floats(4));
}

TEST(RowOffsets, ComparePixelsBelow111) {
    // Of two rows, the even one has the samples 60 and 40, and the odd one has `pixel` twice. Below 111 these
    // make the odd row brighter; from 111 on they do not count at all.
    for (const std::uint16_t pixel : std::vector<std::uint16_t>{110, 111}) {
        const Frame frame = {4, 2, {60, 0, 40, 0, 0, pixel, 0, pixel}};
        const RowOffsets offsets = Estimate(frame);
        if (pixel == 110) {
            EXPECT_EQ(offsets.left, (Floats{15, -15}));  // 30 and none
        } else {
            EXPECT_TRUE(std::isnan(offsets.left[0]));  // the odd row has no pixel below 100
        }
    }
}

TEST(RowOffsets, AreNaNWithoutDarkPixels) {
    const RowOffsets offsets = Estimate({4, 2, std::vector<std::uint16_t>(8, 100)});
    for (const float offset : {offsets.left[0], offsets.left[1], offsets.right[0], offsets.right[1]}) {
        EXPECT_TRUE(std::isnan(offset));
    }
}

TEST(RowOffsets, EqualThePlainLoopForEverySize) {
    int even_rows_darker = 0;
    int frames = 0;
    for (const int width : {2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 3920, 3968}) {
        for (const int height : {1, 2, 3, 4, 5, 6, 9, 12}) {
            for (std::uint32_t seed = 0; seed < 8; ++seed) {
                const Frame frame = oracle::RandomFrame(width, height, seed, 60, 70);
                const RowOffsets offsets = Estimate(frame);
                const RowOffsets expected = oracle::Offsets(frame);
                SCOPED_TRACE(testing::Message() << width << " x " << height << ", seed " << seed);
                ExpectSame(offsets.left, expected.left);
                ExpectSame(offsets.right, expected.right);
                even_rows_darker += oracle::EvenRowsAreDarker(frame) ? 1 : 0;
                ++frames;
            }
        }
    }
    EXPECT_GT(even_rows_darker, frames / 5);
    EXPECT_LT(even_rows_darker, frames * 4 / 5);
}

}  // namespace
