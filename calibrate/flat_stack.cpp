// SPDX-License-Identifier: MIT
#include "calibrate/flat_stack.h"

#include <algorithm>
#include <cmath>

#include "calibrate/statistics.h"
#include "sensor/sensor_frame.h"

namespace {

using namespace sensor_grid;

constexpr int kColours = 2;           // in a row
constexpr float kLeastLight = 0.10F;  // of the range
constexpr float kMostLight = 0.70F;

/// Median of the light in a row of blocks, of the columns of one colour.
float RowLight(std::span<const float> row, std::span<const float> dark, std::size_t colour) {
    constexpr std::size_t step = kColours * 4;
    std::vector<float> light;
    light.reserve(row.size() / step + 1);
    for (std::size_t x = colour; x < row.size(); x += step) {
        light.push_back(row[x] - dark[x]);
    }
    return statistics::Median(light);
}

}  // namespace

bool FlatStack::Add(const BlockMeans& even, const BlockMeans& odd, std::span<const float> dark) {
    // Of the middle row of blocks; green is the brightest.
    float brightest = 0;
    for (std::size_t colour = 0; colour < kColours; ++colour) {
        for (const BlockMeans* const blocks : {&even, &odd}) {
            brightest = std::max(brightest, RowLight(Row(blocks->means, kBlocks / 2), dark, colour));
        }
    }
    if (brightest < kLeastLight * sensor_frame::kWhite || brightest > kMostLight * sensor_frame::kWhite) {
        return false;
    }
    if (count_ == 0) {
        sum_.assign(kGridSize, 0);
        nearest_.assign(kGridSize, 0);
    }
    for (int block = 0; block < kBlocks; ++block) {
        const auto even_row = Row(even.means, block);
        const auto odd_row = Row(odd.means, block);
        const auto sum = Row(sum_, block);
        const auto nearest = Row(nearest_, block);
        for (std::size_t colour = 0; colour < kColours; ++colour) {
            const float even_share = 0.5F / std::max(RowLight(even_row, dark, colour), 1.0F);
            const float odd_share = 0.5F / std::max(RowLight(odd_row, dark, colour), 1.0F);
            for (std::size_t x = colour; x < kColumns; x += kColours) {
                const float answer =
                    ((even_row[x] - dark[x]) * even_share) + ((odd_row[x] - dark[x]) * odd_share);
                sum[x] += brightest * answer;
                const bool nearer = std::abs(answer - 1) < std::abs(nearest[x] - 1);
                nearest[x] = count_ == 0 || nearer ? answer : nearest[x];
            }
        }
    }
    weight_ += brightest;
    ++count_;
    return true;
}

Grid FlatStack::Combined() const {
    Grid combined = sum_;
    for (float& value : combined) {
        value /= weight_;
    }
    return combined;
}
