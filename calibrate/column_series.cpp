// SPDX-License-Identifier: MIT
#include "calibrate/column_series.h"

#include <algorithm>
#include <array>
#include <limits>

#include "calibrate/column_medians.h"
#include "calibrate/statistics.h"

namespace {

using namespace sensor_grid;

constexpr int kTile = 62;  // columns from which a shared offset is subtracted
static_assert(kHalf % kTile == 0);

/// The noise of the blocks of `row`, from their MAD.
float RowNoise(std::span<const float> row) {
    std::vector<float> copy(row.begin(), row.end());
    return statistics::DeviationAround(0, copy);
}

}  // namespace

ColumnSeries::ColumnSeries(const Grid& grid) : medians_(ColumnMedians(grid)), values_(MakeGrid(0)) {
    constexpr int sampled = 20;
    std::vector<float> noises;
    std::vector<float> row(kColumns);
    // A first estimate, which still includes the noise that columns share.
    std::ranges::transform(Row(grid, kBlocks / 2), medians_, row.begin(), std::minus());
    noise_ = RowNoise(row);
    for (int block = 0; block < kBlocks; ++block) {
        std::ranges::transform(Row(grid, block), medians_, row.begin(), std::minus());
        SubtractShared(row);
        if (block % sampled == 0) {
            noises.push_back(RowNoise(row));
        }
        for (std::size_t x = 0; x < row.size(); ++x) {
            values_[(x * kBlocks) + static_cast<std::size_t>(block)] = row[x];
        }
    }
    noise_ = std::max(statistics::Median(noises), std::numeric_limits<float>::min());
}

/// Subtracts the mean of each tile from it, with far values clipped. A few values are enough for the centre.
void ColumnSeries::SubtractShared(std::span<float> row) const {
    constexpr std::size_t step = 4;
    constexpr float reach = 4;  // deviations
    for (std::size_t first = 0; first < row.size(); first += kTile) {
        const auto tile = row.subspan(first, kTile);
        std::array<float, (kTile + step - 1) / step> some = {};
        for (std::size_t i = 0; i < some.size(); ++i) {
            some[i] = tile[i * step];
        }
        const float shared = statistics::ClippedMean(tile, statistics::Median(some), reach * noise_);
        for (float& value : tile) {
            value -= shared;
        }
    }
}
