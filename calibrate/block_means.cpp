// SPDX-License-Identifier: MIT
#include "calibrate/block_means.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "calibrate/statistics.h"
#include "sensor/sensor_frame.h"

namespace {

using namespace sensor_grid;

constexpr std::size_t kLanes = 248;  // columns worked on at a time: their samples stay in the first cache
static_assert(kColumns % kLanes == 0);

constexpr std::size_t kSamples = 9;
using Lane = std::array<std::uint16_t, kLanes>;
using Samples = std::array<Lane, kSamples>;

/// One comparator of a sorting network, for all lanes.
void Order(Lane& low, Lane& high) {
    for (std::size_t i = 0; i < kLanes; ++i) {
        const std::uint16_t a = low[i];
        const std::uint16_t b = high[i];
        low[i] = std::min(a, b);
        high[i] = std::max(a, b);
    }
}

/// Sorts nine values with 25 comparators (R. W. Floyd's network, in D. E. Knuth, The Art of Computer Programming,
/// vol. 3, 5.3.4).
void Sort(Samples& s) {
    constexpr std::array<std::array<std::size_t, 2>, 25> network = {
        {{0, 3}, {1, 7}, {2, 5}, {4, 8}, {0, 7}, {2, 4}, {3, 8}, {5, 6}, {0, 2}, {1, 3}, {4, 5}, {7, 8}, {1, 4},
         {3, 6}, {5, 7}, {0, 1}, {2, 4}, {3, 5}, {6, 8}, {2, 3}, {4, 5}, {6, 7}, {1, 2}, {3, 4}, {5, 6}}};
    for (const auto& [low, high] : network) {
        Order(s[low], s[high]);
    }
}

/// The rows of a patch that are taken, and how.
struct PatchRows {
    std::size_t first;       // row of the frame
    std::size_t step;        // rows of the frame
    std::size_t count;       // rows taken
    std::size_t block_rows;  // of them in a block
};

void TakeSamples(const std::uint16_t* pixels, const PatchRows& rows, Samples& samples) {
    for (std::size_t i = 0; i < kSamples; ++i) {
        // Spread over the patch, the middle of each ninth.
        const std::size_t row = rows.first + ((((2 * i) + 1) * rows.count / (2 * kSamples)) * rows.step);
        const std::uint16_t* const source = pixels + (row * kColumns);
        std::ranges::transform(source, source + kLanes, samples[i].begin(), [](std::uint16_t pixel) {
            return std::min<std::uint16_t>(pixel, sensor_frame::kWhite);
        });
    }
}

/// Sums of what a row's pixels differ from `centre`, none counting as more than `reach`.
void AddRow(const std::uint16_t* pixels, const Lane& centre, std::int16_t reach,
            std::array<std::int16_t, kLanes>& sums) {
    for (std::size_t i = 0; i < kLanes; ++i) {
        const std::uint16_t pixel = std::min<std::uint16_t>(pixels[i], sensor_frame::kWhite);
        const auto difference = static_cast<std::int16_t>(pixel - centre[i]);
        const std::int16_t low = std::max<std::int16_t>(difference, static_cast<std::int16_t>(-reach));
        sums[i] = static_cast<std::int16_t>(sums[i] + std::min(low, reach));
    }
}

/// One patch of kLanes columns from `pixels` on.
void MeasurePatch(const std::uint16_t* pixels, const PatchRows& rows, std::int16_t reach, float* means,
                  std::uint16_t* spread) {
    Samples samples;
    TakeSamples(pixels, rows, samples);
    Sort(samples);
    const Lane& centre = samples[kSamples / 2];
    for (std::size_t i = 0; i < kLanes; ++i) {
        spread[i] = static_cast<std::uint16_t>(samples[kSamples - 2][i] - samples[1][i]);
    }
    const float share = 1 / static_cast<float>(rows.block_rows);
    for (std::size_t row = 0; row < rows.count; row += rows.block_rows) {
        std::array<std::int16_t, kLanes> sums = {};
        for (std::size_t i = 0; i < rows.block_rows; ++i) {
            AddRow(pixels + ((rows.first + ((row + i) * rows.step)) * kColumns), centre, reach, sums);
        }
        for (std::size_t i = 0; i < kLanes; ++i) {
            means[i] = static_cast<float>(centre[i]) + (share * static_cast<float>(sums[i]));
        }
        means += kColumns;
    }
}

}  // namespace

void MeasureBlocks(std::span<const std::uint16_t> pixels, BlockRows rows, int reach, BlockMeans& result) {
    // Six differences of this size, and no more, fit the sums.
    constexpr int most = 5400;
    const auto limit = static_cast<std::int16_t>(std::clamp(reach, 1, most));
    result.means.resize(kGridSize);
    result.spread.resize(std::size_t{kPatches} * kColumns);
    const std::size_t step = rows == BlockRows::kAll ? 1 : 2;
    for (int patch = 0; patch < kPatches; ++patch) {
        const int first_block = patch * kPatchBlocks;
        const int end_block = patch == kPatches - 1 ? kBlocks : first_block + kPatchBlocks;
        const PatchRows taken = {
            .first = (static_cast<std::size_t>(first_block) * kBlockRows) + (rows == BlockRows::kOdd ? 1 : 0),
            .step = step,
            .count = static_cast<std::size_t>(end_block - first_block) * kBlockRows / step,
            .block_rows = kBlockRows / step};
        for (std::size_t column = 0; column < kColumns; column += kLanes) {
            MeasurePatch(pixels.data() + column, taken, limit, Row(result.means, first_block).data() + column,
                         result.spread.data() + (static_cast<std::size_t>(patch) * kColumns) + column);
        }
    }
}

PixelNoise MeasureNoise(std::span<const std::uint16_t> pixels) {
    constexpr std::size_t every_rows = 66;
    constexpr std::size_t every_columns = 2;
    constexpr std::size_t same_colour = 2;
    statistics::DifferenceHistogram between_rows;
    statistics::DifferenceHistogram of_differences;
    for (std::size_t y = 0; y + same_colour < kRows; y += every_rows) {
        const auto row = pixels.subspan(y * kColumns, kColumns);
        const auto below = pixels.subspan((y + same_colour) * kColumns, kColumns);
        for (std::size_t x = 0; x + same_colour < kColumns; x += every_columns + (x % 3)) {
            const int here = int{row[x]} - int{below[x]};
            between_rows.Add(here);
            of_differences.Add(here - (int{row[x + same_colour]} - int{below[x + same_colour]}));
        }
    }
    return {.pixel = of_differences.Deviation() / 2, .with_rows = between_rows.Deviation() / std::sqrt(2.0F)};
}
