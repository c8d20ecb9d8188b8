// SPDX-License-Identifier: MIT
#include "calibrate/segments.h"

#include <gtest/gtest.h>

#include "samples/seeded_noise.h"

namespace {

/// 441 values of noise, raised by `step` from `begin` to `end` - 1.
std::vector<float> Series(int begin, int end, float step, std::uint64_t seed = 7) {
    constexpr int count = 441;
    std::vector<float> values;
    values.reserve(count);
    for (int i = 0; i < count; ++i) {
        values.push_back(samples::NormalNoise(seed, static_cast<std::uint64_t>(i)) +
                         (i >= begin && i < end ? step : 0));
    }
    return values;
}

TEST(SegmentsTest, NoiseIsOneSegment) {
    for (std::uint64_t seed = 0; seed < 50; ++seed) {
        EXPECT_EQ(segments::Find(Series(0, 0, 0, seed)).size(), 1U) << seed;
    }
}

TEST(SegmentsTest, AStepIsTwoSegmentsWithTheirLevels) {
    const auto found = segments::Find(Series(117, 441, 5));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].begin, 0);
    EXPECT_EQ(found[0].end, 117);
    EXPECT_NEAR(found[0].level, 0, 0.5);
    EXPECT_EQ(found[1].begin, 117);
    EXPECT_EQ(found[1].end, 441);
    EXPECT_NEAR(found[1].level, 5, 0.5);
}

TEST(SegmentsTest, AnIntervalIsThreeSegments) {
    const std::vector<float> values = Series(200, 210, 6);
    EXPECT_TRUE(segments::MayChange(values));
    const auto found = segments::Find(values);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[1].begin, 200);
    EXPECT_EQ(found[1].end, 210);
}

TEST(SegmentsTest, AnIntervalMayBeTheLastValues) {
    for (const int begin : {425, 426, 431, 432, 433}) {
        const auto found = segments::Find(Series(begin, 441, 8));
        ASSERT_EQ(found.size(), 2U) << begin;
        EXPECT_EQ(found[1].begin, begin);
    }
}

TEST(SegmentsTest, TwoHotBlocksInARowAreNotASegment) {
    EXPECT_EQ(segments::Find(Series(200, 202, 5000)).size(), 1U);
}

TEST(SegmentsTest, UpToOneValueGivesAtMostOneSegment) {
    EXPECT_FALSE(segments::MayChange({}));
    EXPECT_EQ(segments::Find(std::vector<float>{3}).size(), 1U);
}

}  // namespace
