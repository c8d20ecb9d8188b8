// SPDX-License-Identifier: MIT
#include "calibrate/dark_check.h"

#include <algorithm>
#include <cmath>

#include "calibrate/number_text.h"
#include "calibrate/statistics.h"

namespace {

using namespace sensor_grid;

constexpr float kBrightestBlack = 300;  // raw units at the base ISO
constexpr float kMostShading = 4;
constexpr int kTile = 62;  // columns
constexpr int kTiles = kColumns / kTile;

/// For each band of rows, the median difference of the blocks from their columns' levels, over some columns.
std::vector<float> RowShading(const BlockMeans& blocks, const std::vector<float>& columns, int first,
                              int width) {
    constexpr int bands = 9;
    constexpr int rows = kBlocks / bands;
    // A few hundred blocks are enough for a median.
    constexpr int every_columns = 16;
    constexpr int every_blocks = 3;
    std::vector<float> shading;
    for (int band = 0; band < bands; ++band) {
        std::vector<float> values;
        for (int block = band * rows; block < (band + 1) * rows; block += every_blocks) {
            const auto row = Row(blocks.means, block);
            for (int x = first; x < first + width; x += every_columns) {
                values.push_back(row[static_cast<std::size_t>(x)] - columns[static_cast<std::size_t>(x)]);
            }
        }
        shading.push_back(statistics::Median(values));
    }
    return shading;
}

float Range(std::span<const float> values) {
    const auto [least, most] = std::ranges::minmax(values);
    return most - least;
}

/// The level of each tile at the base ISO, minus the median of all tiles.
std::vector<float> TileLevels(const DarkExposure& exposure) {
    std::vector<float> tiles;
    for (int tile = 0; tile < kTiles; ++tile) {
        const auto first = exposure.columns.begin() + static_cast<std::ptrdiff_t>(tile) * kTile;
        std::vector<float> values(first, first + kTile);
        tiles.push_back(statistics::Median(values) / exposure.gain);
    }
    std::vector<float> copy = tiles;
    const float median = statistics::Median(copy);
    for (float& tile : tiles) {
        tile -= median;
    }
    return tiles;
}

}  // namespace

std::string WhyNotDark(const BlockMeans& blocks, const std::vector<float>& columns, float gain) {
    std::vector<float> row(Row(blocks.means, kBlocks / 2).begin(), Row(blocks.means, kBlocks / 2).end());
    const float level = statistics::Median(row);
    if (level > kBrightestBlack * gain) {
        return "not dark: half of its pixels are above " + Fixed(level, 0);
    }
    constexpr int strips = 8;
    float shading = 0;
    for (int strip = 0; strip < strips; ++strip) {
        shading = std::max(shading,
                           Range(RowShading(blocks, columns, strip * kColumns / strips, kColumns / strips)));
    }
    if (shading > kMostShading * gain) {
        return "not dark: some of its rows are brighter than others by " + Fixed(shading, 0) +
               ", which means light";
    }
    return "";
}

std::vector<std::size_t> FarFromOthers(std::span<const DarkExposure> exposures) {
    std::vector<std::vector<float>> tiles;
    tiles.reserve(exposures.size());
    for (const DarkExposure& exposure : exposures) {
        tiles.push_back(TileLevels(exposure));
    }
    std::vector<float> usual(kTiles);
    for (std::size_t tile = 0; tile < usual.size(); ++tile) {
        std::vector<float> values;
        values.reserve(tiles.size());
        for (const auto& exposure : tiles) {
            values.push_back(exposure[tile]);
        }
        usual[tile] = statistics::Median(values);
    }
    std::vector<std::size_t> far;
    for (std::size_t i = 0; i < tiles.size(); ++i) {
        float apart = 0;
        for (std::size_t tile = 0; tile < usual.size(); ++tile) {
            apart = std::max(apart, std::abs(tiles[i][tile] - usual[tile]));
        }
        if (apart > (tiles.size() == 2 ? kMostShading / 2 : kMostShading)) {
            far.push_back(i);
        }
    }
    if (tiles.size() == 2 && far.size() == 2) {
        far.erase(far.begin() + (Range(tiles[0]) > Range(tiles[1]) ? 1 : 0));
    }
    return far;
}
