// SPDX-License-Identifier: MIT
#include "sensor/dither.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t kRowLength = 3968;

/// A dither, after seeding the library's sequence with `seed`.
Dither Seeded(unsigned int seed) {
    std::srand(seed);
    return {};
}

/// `rows` rows of `kRowLength` numbers, filled row by row as in the correction.
std::vector<float> Rows(std::size_t rows) {
    Dither dither = Seeded(1);
    std::vector<float> values(rows * kRowLength);
    for (std::size_t y = 0; y < rows; ++y) {
        dither.Fill(std::span(values).subspan(y * kRowLength, kRowLength));
    }
    return values;
}

/// A statistic that is off by more than six standard deviations is not due to chance.
constexpr double kDeviations = 6;

TEST(Dither, IsUniformFromZeroToBelowOne) {
    const auto values = Rows(1000);
    EXPECT_GE(*std::ranges::min_element(values), 0.0F);
    EXPECT_LT(*std::ranges::max_element(values), 1.0F);
    constexpr std::size_t bins = 64;
    std::vector<int> histogram(bins);
    for (const float value : values) {
        ++histogram.at(static_cast<std::size_t>(value * bins));
    }
    const double expected = static_cast<double>(values.size()) / bins;
    for (const int count : histogram) {
        EXPECT_NEAR(count, expected, kDeviations * std::sqrt(expected));
    }
}

TEST(Dither, HasNoStructureAlongRowsOrColumns) {
    const auto values = Rows(1000);
    // Neighbours in the row, numbers of the same generator, neighbours in the column.
    for (const std::size_t distance :
         {std::size_t{1}, std::size_t{2}, std::size_t{15}, Dither::kLanes, 2 * Dither::kLanes, kRowLength - 1,
          kRowLength, kRowLength + 1, 2 * kRowLength}) {
        double product = 0;
        const std::size_t pairs = values.size() - distance;
        for (std::size_t i = 0; i < pairs; ++i) {
            product +=
                (static_cast<double>(values[i]) - 0.5) * (static_cast<double>(values[i + distance]) - 0.5);
        }
        const double correlation = product * 12 / static_cast<double>(pairs);
        EXPECT_NEAR(correlation, 0, kDeviations / std::sqrt(pairs)) << distance;
    }
}

TEST(Dither, FollowsTheSeedOfTheLibrary) {
    const auto first = [](unsigned int seed) {
        std::vector<float> values(4 * Dither::kLanes);
        Seeded(seed).Fill(values);
        return values;
    };
    EXPECT_EQ(first(1), first(1));
    EXPECT_NE(first(1), first(2));
}

TEST(Dither, ContinuesFromOneFillToTheNext) {
    Dither pieces = Seeded(1);
    std::vector<float> in_pieces(2 * kRowLength);
    pieces.Fill(std::span(in_pieces).first(kRowLength));
    pieces.Fill(std::span(in_pieces).last(kRowLength));
    std::vector<float> at_once(2 * kRowLength);
    Seeded(1).Fill(at_once);
    EXPECT_EQ(in_pieces, at_once);
}

TEST(Dither, DiffersFromOneObjectToTheNext) {
    std::vector<float> first(Dither::kLanes);
    std::vector<float> second(Dither::kLanes);
    Dither().Fill(first);
    Dither().Fill(second);
    EXPECT_NE(first, second);
}

}  // namespace
