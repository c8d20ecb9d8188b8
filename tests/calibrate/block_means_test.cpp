// SPDX-License-Identifier: MIT
#include "calibrate/block_means.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "base/pixel.h"
#include "calibrate/sensor_grid.h"
#include "samples/seeded_noise.h"
#include "tests/sensor/versions.h"

namespace {

using namespace sensor_grid;

constexpr int kReach = 40;
constexpr int kLargest = 16383;  // of a pixel of 14 bits

/// Noise around 500, with values near 0 and beyond 14 bits.
std::vector<Pixel> NoisyFrame() {
    std::vector<Pixel> pixels(static_cast<std::size_t>(kColumns) * kRows);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const auto value = static_cast<int>(500 + (20 * samples::NormalNoise(3, i)));
        pixels[i] = static_cast<Pixel>(i % 97 == 0 ? 65535 : i % 89 == 0 ? 0 : std::max(value, 0));
    }
    return pixels;
}

/// The rows of a patch that are measured, as numbers of rows of the frame.
std::vector<std::size_t> RowsOf(int patch, BlockRows which) {
    const int end_block = patch == kPatches - 1 ? kBlocks : (patch + 1) * kPatchBlocks;
    std::vector<std::size_t> rows;
    for (int row = patch * kPatchRows; row < end_block * kBlockRows; ++row) {
        if (which == BlockRows::kAll || (row % 2 == 0) == (which == BlockRows::kEven)) {
            rows.push_back(static_cast<std::size_t>(row));
        }
    }
    return rows;
}

/// What the header says of MeasureBlocks, column by column.
BlockMeans Expected(const std::vector<Pixel>& pixels, BlockRows which) {
    BlockMeans result = {.means = MakeGrid(0),
                         .spread = std::vector<std::uint16_t>(std::size_t{kPatches} * kColumns)};
    const int block_rows = which == BlockRows::kAll ? kBlockRows : kBlockRows / 2;
    for (int patch = 0; patch < kPatches; ++patch) {
        const std::vector<std::size_t> rows = RowsOf(patch, which);
        for (std::size_t column = 0; column < kColumns; ++column) {
            const auto value = [&](std::size_t row) {
                return std::min<int>(pixels[(row * kColumns) + column], kLargest);
            };
            std::array<int, 9> samples = {};
            for (std::size_t i = 0; i < samples.size(); ++i) {
                samples[i] = value(rows[((2 * i) + 1) * rows.size() / (2 * samples.size())]);
            }
            std::ranges::sort(samples);
            result.spread[(static_cast<std::size_t>(patch) * kColumns) + column] =
                static_cast<std::uint16_t>(samples[7] - samples[1]);
            for (std::size_t first = 0; first < rows.size(); first += static_cast<std::size_t>(block_rows)) {
                int sum = 0;
                for (int i = 0; i < block_rows; ++i) {
                    const int difference = value(rows[first + static_cast<std::size_t>(i)]) - samples[4];
                    sum += std::clamp(difference, -kReach, kReach);
                }
                const int block = (patch * kPatchBlocks) + static_cast<int>(first) / block_rows;
                Row(result.means, block)[column] =
                    static_cast<float>(samples[4]) +
                    (1 / static_cast<float>(block_rows) * static_cast<float>(sum));
            }
        }
    }
    return result;
}

TEST(BlockMeansTest, EveryVersionGivesTheClippedMeansAndTheSpreads) {
    const std::vector<Pixel> pixels = NoisyFrame();
    for (const BlockRows rows : {BlockRows::kAll, BlockRows::kEven, BlockRows::kOdd}) {
        const BlockMeans expected = Expected(pixels, rows);
        for (const InstructionSet version : AvailableVersions()) {
            BlockMeans measured;
            MeasureBlocks(pixels, rows, kReach, measured, version);
            EXPECT_EQ(measured.means, expected.means)
                << static_cast<int>(rows) << ", " << static_cast<int>(version);
            EXPECT_EQ(measured.spread, expected.spread)
                << static_cast<int>(rows) << ", " << static_cast<int>(version);
        }
    }
}

}  // namespace
