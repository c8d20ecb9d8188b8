// SPDX-License-Identifier: MIT
#include "calibrate/column_medians.h"

#include <cstddef>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "calibrate/sensor_grid.h"
#include "calibrate/statistics.h"
#include "samples/seeded_noise.h"
#include "tests/sensor/versions.h"

namespace {

using namespace sensor_grid;

/// Noise around 0 in the even columns, and a few values again and again in the odd ones.
Grid NoiseOfBothSigns() {
    Grid grid = MakeGrid(0);
    for (std::size_t i = 0; i < grid.size(); ++i) {
        const float noise = samples::NormalNoise(5, i);
        grid[i] = i % 2 == 0 ? 1000 * noise : static_cast<float>(static_cast<int>(noise));
    }
    return grid;
}

std::vector<float> OfEachColumn(const Grid& grid) {
    std::vector<float> medians;
    medians.reserve(kColumns);
    for (int column = 0; column < kColumns; ++column) {
        std::vector<float> values;
        values.reserve(kBlocks);
        for (int block = 0; block < kBlocks; ++block) {
            values.push_back(Row(grid, block)[static_cast<std::size_t>(column)]);
        }
        medians.push_back(statistics::Median(values));
    }
    return medians;
}

TEST(ColumnMediansTest, EveryVersionGivesTheMedianOfEachColumn) {
    const Grid grid = NoiseOfBothSigns();
    const std::vector<float> expected = OfEachColumn(grid);
    for (const InstructionSet version : AvailableVersions()) {
        EXPECT_EQ(ColumnMedians(grid, version), expected) << static_cast<int>(version);
    }
}

TEST(ColumnMediansTest, InfinitiesAreInOrder) {
    Grid grid = MakeGrid(7);
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (int block = 0; block < kBlocks; ++block) {
        Row(grid, block)[0] = block % 2 == 0 ? -infinity : infinity;
    }
    for (const InstructionSet version : AvailableVersions()) {
        const std::vector<float> medians = ColumnMedians(grid, version);
        EXPECT_EQ(medians[0], -infinity) << static_cast<int>(version);
        EXPECT_EQ(medians[1], 7) << static_cast<int>(version);
    }
}

}  // namespace
