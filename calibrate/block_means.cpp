// SPDX-License-Identifier: MIT
#include "calibrate/block_means.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/pixel.h"
#include "calibrate/statistics.h"
#include "sensor/sensor_frame.h"
#include "system/pixel_memory.h"

namespace {

using namespace sensor_grid;

// Columns processed together: their samples stay in the first-level cache.
constexpr std::size_t kLanes = 248;
static_assert(kColumns % kLanes == 0);

constexpr std::size_t kSamples = 9;
/// Signed, because the oldest vector instructions only compare signed values; no pixel has more than 14 bits.
using Lane = std::array<std::int16_t, kLanes>;
using Samples = std::array<Lane, kSamples>;

// What follows up to MeasurePatch is compiled for several sets of vector instructions, see
// instruction_set::Run.

/// One comparator of a sorting network, for all lanes. This loop and those below use bare pointers, because
/// index checks would prevent vectorisation.
[[gnu::always_inline]] inline void Order(Lane& first, Lane& second) {
    std::int16_t* __restrict const low = first.data();
    std::int16_t* __restrict const high = second.data();
    for (std::size_t i = 0; i < kLanes; ++i) {
        const std::int16_t a = low[i];
        const std::int16_t b = high[i];
        const std::int16_t smaller = std::min(a, b);
        low[i] = smaller;
        high[i] = static_cast<std::int16_t>(a ^ b ^ smaller);  // the larger one, without a second comparison
    }
}

/// Sorts nine values with 25 comparators (R. W. Floyd's network, in D. E. Knuth, The Art of Computer
/// Programming, vol. 3, 5.3.4).
[[gnu::always_inline]] inline void Sort(Samples& s) {
    constexpr std::array<std::array<std::size_t, 2>, 25> network = {
        {{0, 3}, {1, 7}, {2, 5}, {4, 8}, {0, 7}, {2, 4}, {3, 8}, {5, 6}, {0, 2},
         {1, 3}, {4, 5}, {7, 8}, {1, 4}, {3, 6}, {5, 7}, {0, 1}, {2, 4}, {3, 5},
         {6, 8}, {2, 3}, {4, 5}, {6, 7}, {1, 2}, {3, 4}, {5, 6}}};
    for (const auto& [low, high] : network) {
        Order(s[low], s[high]);
    }
}

/// Selects the rows of a patch that are measured.
struct PatchRows {
    std::size_t first;       // row of the frame
    std::size_t step;        // distance of the rows
    std::size_t count;       // number of rows
    std::size_t block_rows;  // rows per block
};

/// Clips a pixel to 14 bits, because a damaged file may hold more.
[[gnu::always_inline]] inline std::int16_t InRange(Pixel pixel) {
    return static_cast<std::int16_t>(std::min<Pixel>(pixel, sensor_frame::kWhite));
}

[[gnu::always_inline]] inline void TakeSamples(const Pixel* pixels, const PatchRows& rows, Samples& samples) {
    for (std::size_t i = 0; i < kSamples; ++i) {
        // Spread over the patch: the middle of each ninth.
        const std::size_t row = rows.first + ((((2 * i) + 1) * rows.count / (2 * kSamples)) * rows.step);
        const Pixel* const source = pixels + (row * kColumns);
        std::int16_t* const sample = samples[i].data();
        for (std::size_t x = 0; x < kLanes; ++x) {
            sample[x] = InRange(source[x]);
        }
    }
}

/// Adds the differences of a row's pixels from `centre` to `sums`, each clipped to `reach`.
[[gnu::always_inline]] inline void AddRow(const Pixel* pixels, const std::int16_t* centre, std::int16_t reach,
                                          std::int16_t* sums) {
    for (std::size_t i = 0; i < kLanes; ++i) {
        const auto difference = static_cast<std::int16_t>(InRange(pixels[i]) - centre[i]);
        const std::int16_t low = std::max<std::int16_t>(difference, static_cast<std::int16_t>(-reach));
        sums[i] = static_cast<std::int16_t>(sums[i] + std::min(low, reach));
    }
}

/// Measures one patch of kLanes columns, from `pixels` on.
struct MeasurePatch {
    [[gnu::always_inline]] static void Run(const Pixel* pixels, PatchRows rows, std::int16_t reach,
                                           float* means, std::uint16_t* spread) {
        Samples samples;
        TakeSamples(pixels, rows, samples);
        Sort(samples);
        const std::int16_t* const centre = samples[kSamples / 2].data();
        const std::int16_t* const low = samples[1].data();
        const std::int16_t* const high = samples[kSamples - 2].data();
        for (std::size_t i = 0; i < kLanes; ++i) {
            spread[i] = static_cast<std::uint16_t>(high[i] - low[i]);
        }
        const float share = 1 / static_cast<float>(rows.block_rows);
        for (std::size_t row = 0; row < rows.count; row += rows.block_rows) {
            Lane lane = {};
            std::int16_t* const sums = lane.data();
            for (std::size_t i = 0; i < rows.block_rows; ++i) {
                AddRow(pixels + ((rows.first + ((row + i) * rows.step)) * kColumns), centre, reach, sums);
            }
            for (std::size_t i = 0; i < kLanes; ++i) {
                means[i] = static_cast<float>(centre[i]) + (share * static_cast<float>(sums[i]));
            }
            means += kColumns;
        }
    }
};

}  // namespace

void MeasureBlocks(std::span<const Pixel> pixels, BlockRows rows, int reach, BlockMeans& result,
                   InstructionSet version) {
    // The sums have room for six differences of this size and no more.
    constexpr int most = 5400;
    const auto limit = static_cast<std::int16_t>(std::clamp(reach, 1, most));
    pixel_memory::Resize(result.means, kGridSize);
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
            instruction_set::Run<MeasurePatch>(
                version, pixels.data() + column, taken, limit, Row(result.means, first_block).data() + column,
                result.spread.data() + (static_cast<std::size_t>(patch) * kColumns) + column);
        }
    }
}

PixelNoise MeasureNoise(std::span<const Pixel> pixels) {
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
