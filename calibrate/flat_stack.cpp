// SPDX-License-Identifier: MIT
#include "calibrate/flat_stack.h"

#include <algorithm>
#include <cmath>

#include "calibrate/statistics.h"
#include "sensor/sensor_frame.h"

namespace {

using namespace sensor_grid;

constexpr int kColours = 2;           // per row
constexpr float kLeastLight = 0.10F;  // fraction of the range
constexpr float kMostLight = 0.70F;

/// Median of the light in the columns of one colour, in a row of blocks.
float RowLight(std::span<const float> row, std::span<const float> dark, std::size_t colour) {
    constexpr std::size_t step = std::size_t{kColours} * 4;
    std::vector<float> light;
    light.reserve(row.size() / step + 1);
    for (std::size_t x = colour; x < row.size(); x += step) {
        light.push_back(row[x] - dark[x]);
    }
    return statistics::Median(light);
}

/// Whether hardly any adjacent tiles differ by more than vignetting explains. An edge through the
/// picture does not count, because it affects only one line of tiles.
bool IsEven(const BlockMeans& blocks, std::span<const float> dark) {
    constexpr std::size_t tile = 62;  // columns
    constexpr int every = 49;         // rows of blocks
    constexpr float most = 0.1F;      // fraction of the light
    constexpr int most_in_ten = 1;
    int pairs = 0;
    int uneven = 0;
    for (int block = every / 2; block < kBlocks; block += every) {
        const auto row = Row(blocks.means, block);
        float before = 0;
        for (std::size_t first = 0; first < row.size(); first += tile) {
            std::vector<float> light;
            for (std::size_t x = first; x < first + tile; x += kColours) {
                light.push_back(row[x] - dark[x]);
            }
            const float here = statistics::Median(light);
            pairs += first > 0 ? 1 : 0;
            uneven += first > 0 && std::abs(here - before) > most * std::max(here, before) ? 1 : 0;
            before = here;
        }
    }
    return uneven * 10 <= pairs * most_in_ten;
}

}  // namespace

std::string FlatStack::Add(const BlockMeans& even, const BlockMeans& odd, std::span<const float> dark) {
    // The light of the brighter colour, which is green, in the middle row of blocks.
    float brightest = 0;
    for (std::size_t colour = 0; colour < kColours; ++colour) {
        for (const BlockMeans* const blocks : {&even, &odd}) {
            brightest = std::max(brightest, RowLight(Row(blocks->means, kBlocks / 2), dark, colour));
        }
    }
    if (brightest < kLeastLight * sensor_frame::kWhite || brightest > kMostLight * sensor_frame::kWhite) {
        return "not a flat exposure: the light in its middle is not between 10 and 70 % of the range";
    }
    if (!IsEven(even, dark) || !IsEven(odd, dark)) {
        return "not a flat exposure: its light is not even";
    }
    if (count_ == 0) {
        sum_ = MakeGrid(0);
        nearest_ = MakeGrid(0);
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
    return "";
}

Grid FlatStack::Combined() const {
    Grid combined = sum_;
    for (float& value : combined) {
        value /= weight_;
    }
    return combined;
}
