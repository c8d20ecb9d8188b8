// SPDX-License-Identifier: MIT
#include "calibrate/statistics.h"

#include <cmath>

#include <gtest/gtest.h>

#include "samples/seeded_noise.h"

namespace {

TEST(StatisticsTest, TheMedianIsTheMiddleValueOrTheMeanOfTheMiddleTwo) {
    std::vector<float> odd = {9, 1, 5};
    EXPECT_EQ(statistics::Median(odd), 5);
    std::vector<float> even = {9, 1, 5, 7};
    EXPECT_EQ(statistics::Median(even), 6);
    EXPECT_EQ(statistics::Median({}), 0);
}

TEST(StatisticsTest, TheDeviationIgnoresATenthOfOutliers) {
    std::vector<float> values;
    for (std::uint64_t i = 0; i < 30000; ++i) {
        values.push_back(i % 10 == 0 ? 1e6F : 100 + 3 * samples::NormalNoise(1, i));
    }
    EXPECT_NEAR(statistics::Deviation(values), 3, 0.6);
}

TEST(StatisticsTest, TheClippedMeanLimitsFarValues) {
    const std::vector<float> values = {10, 11, 9, 1000};
    EXPECT_EQ(statistics::ClippedMean(values, 10, 4), 11);
    EXPECT_EQ(statistics::ClippedMean({}, 10, 4), 10);
}

TEST(StatisticsTest, TheDeviationOfWholeDifferencesIsNotLimitedToWholeNumbers) {
    statistics::DifferenceHistogram histogram;
    for (std::uint64_t i = 0; i < 100000; ++i) {
        const float value = 2.3F * samples::NormalNoise(2, i);
        histogram.Add(static_cast<int>(std::lround(value)));
    }
    histogram.Add(100000);
    EXPECT_NEAR(histogram.Deviation(), 2.3, 0.15);
    EXPECT_EQ(statistics::DifferenceHistogram().Deviation(), 0);
}

}  // namespace
