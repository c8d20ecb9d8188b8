// SPDX-License-Identifier: MIT
#include "calibrate/dark_levels.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/truncate.h"
#include "calibrate/statistics.h"

namespace {

using namespace sensor_grid;

/// Sound blocks that a column needs to get a level from its own rows.
constexpr int kLeastBlocks = 8;

constexpr float kReach = 4;  // deviations up to which a block counts in full

/// The mean of a column's sound blocks, with far values clipped.
float MeanOfSound(const Grid& combined, const DefectMask& mask, int column, float reach) {
    std::vector<float> values;
    values.reserve(kBlocks);
    for (int block = 0; block < kBlocks; ++block) {
        if (!mask.IsListed(column, block)) {
            values.push_back(
                combined[(static_cast<std::size_t>(block) * kColumns) + static_cast<std::size_t>(column)]);
        }
    }
    std::vector<float> copy = values;
    return statistics::ClippedMean(values, statistics::Median(copy), reach);
}

/// The mean of the levels of the sound columns at `distance` on either side; NaN if there are none.
float MeanAtDistance(const std::vector<float>& levels, const std::vector<bool>& sound, int column,
                     int distance) {
    float sum = 0;
    float count = 0;
    for (const int x : {column - distance, column + distance}) {
        if (x >= HalfBegin(column) && x < HalfEnd(column) && sound[static_cast<std::size_t>(x)]) {
            sum += levels[static_cast<std::size_t>(x)];
            ++count;
        }
    }
    return count > 0 ? sum / count : std::numeric_limits<float>::quiet_NaN();
}

/// The level of a column whose pixels are all repaired from its neighbours: in every other row the mean of
/// the columns at distance 2, otherwise a fifth of that and four fifths of the mean at distance 1.
float LevelOfRepair(const std::vector<float>& levels, const std::vector<bool>& sound, int column) {
    constexpr float share_of_next = 0.4F;
    constexpr int furthest = 16;
    float next = MeanAtDistance(levels, sound, column, 1);
    float after_next = MeanAtDistance(levels, sound, column, 2);
    for (int distance = 3; distance < furthest && !(after_next == after_next); ++distance) {
        after_next = MeanAtDistance(levels, sound, column, distance);
    }
    if (!(next == next)) {
        next = after_next;
    }
    return (share_of_next * next) + ((1 - share_of_next) * after_next);
}

}  // namespace

void DefectMask::Add(int column, int first_row, int end_row) {
    if (column < 0 || column >= kColumns) {
        return;
    }
    const int first = std::max(first_row, 0);
    const int end = std::min(end_row, kRows);
    for (int block = first / kBlockRows; block * kBlockRows < end; ++block) {
        sound_blocks_[static_cast<std::size_t>(column)] -= IsListed(column, block) ? 0 : 1;
        listed_[Index(column, block)] = true;
    }
}

std::uint16_t DarkLevels::BlackAfter(std::span<const float> subtracted) const {
    const std::size_t columns = std::min(absolute.size(), subtracted.size());
    double sum = 0;
    for (std::size_t column = 0; column < columns; ++column) {
        sum += static_cast<double>(absolute[column]) - static_cast<double>(subtracted[column]);
    }
    constexpr double half = 0.5;
    return columns == 0 ? std::uint16_t{0}
                        : Truncate<std::uint16_t>((sum / static_cast<double>(columns)) + half);
}

DarkLevels ComputeLevels(const DarkStack& stack, const Grid& combined, const DefectMask& mask) {
    DarkLevels levels = {.absolute = stack.Reference(), .above_darkest = {}};
    const std::vector<float> means = ClippedColumnMeans(combined, kReach * stack.BlockNoise());
    std::vector<bool> sound(kColumns);
    float darkest = std::numeric_limits<float>::max();
    for (int column = 0; column < kColumns; ++column) {
        const auto x = static_cast<std::size_t>(column);
        sound[x] = mask.SoundBlocks(column) >= kLeastBlocks;
        if (sound[x]) {
            levels.absolute[x] += mask.SoundBlocks(column) == kBlocks
                                      ? means[x]
                                      : MeanOfSound(combined, mask, column, kReach * stack.BlockNoise());
            darkest = std::min(darkest, levels.absolute[x]);
        }
    }
    for (int column = 0; column < kColumns; ++column) {
        const auto x = static_cast<std::size_t>(column);
        if (!sound[x]) {
            const float repaired = LevelOfRepair(levels.absolute, sound, column);
            levels.absolute[x] = repaired == repaired ? repaired : darkest;
        }
    }
    levels.above_darkest.resize(kColumns);
    std::ranges::transform(levels.absolute, levels.above_darkest.begin(),
                           [&](float level) { return std::max(0.0F, level - darkest); });
    return levels;
}
