// SPDX-License-Identifier: MIT
#include "calibrate/dark_stack.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "calibrate/statistics.h"

namespace {

using namespace sensor_grid;

constexpr int kHalves = 2;

/// Standard deviation of the mean of a block whose pixels have the deviation `noise`.
float OfBlock(float noise) {
    return noise / std::sqrt(static_cast<float>(kBlockRows));
}

/// Standard deviation of a block, in units of the base ISO.
float BlockDeviation(const DarkExposure& exposure) {
    return OfBlock(exposure.noise.with_rows) / exposure.gain;
}

/// Weaker noise cannot be measured in whole numbers.
constexpr float kLeastNoise = 0.3F;

constexpr std::size_t kLanes = 32;  // columns processed together
static_assert(kColumns % kLanes == 0);
using Lane = std::array<float, kLanes>;

/// Sorts two values per lane. Uses bare pointers, because index checks would prevent vectorisation.
void Order(Lane& first, Lane& second) {
    float* __restrict const low = first.data();
    float* __restrict const high = second.data();
    for (std::size_t i = 0; i < kLanes; ++i) {
        const float smaller = std::min(low[i], high[i]);
        high[i] = std::max(low[i], high[i]);
        low[i] = smaller;
    }
}

/// Sorts the values of every lane (odd-even transposition sort, in D. E. Knuth, The Art of Computer
/// Programming, vol. 3, 5.3.4).
void Sort(std::span<Lane> values) {
    for (std::size_t round = 0; round < values.size(); ++round) {
        for (std::size_t i = round % 2; i + 1 < values.size(); i += 2) {
            Order(values[i], values[i + 1]);
        }
    }
}

/// The median of some of each column's blocks.
std::vector<float> SampledMedians(const Grid& grid) {
    constexpr int step = 29;  // a sample of the blocks is enough for a centre
    constexpr std::size_t count = kBlocks / step;
    static_assert(count % 2 == 1);
    std::vector<float> medians(kColumns);
    std::array<Lane, count> values = {};
    for (std::size_t column = 0; column < kColumns; column += kLanes) {
        for (std::size_t i = 0; i < count; ++i) {
            const auto row = Row(grid, static_cast<int>(i) * step).subspan(column, kLanes);
            std::ranges::copy(row, values[i].begin());
        }
        Sort(values);
        std::ranges::copy(values[count / 2], medians.begin() + static_cast<std::ptrdiff_t>(column));
    }
    return medians;
}

}  // namespace

std::vector<float> ClippedColumnMeans(const Grid& grid, float reach) {
    const std::vector<float> medians = SampledMedians(grid);
    std::vector<float> means(kColumns);
    const float* const centre = medians.data();
    float* __restrict const sum = means.data();
    for (int block = 0; block < kBlocks; ++block) {
        const float* const row = Row(grid, block).data();
        for (std::size_t x = 0; x < kColumns; ++x) {
            sum[x] += std::min(std::max(row[x] - centre[x], -reach), reach);
        }
    }
    for (std::size_t x = 0; x < means.size(); ++x) {
        means[x] = medians[x] + (means[x] / kBlocks);
    }
    return means;
}

std::vector<float> ColumnLevels(const BlockMeans& blocks, float noise) {
    constexpr float reach = 4;  // deviations
    return ClippedColumnMeans(blocks.means, reach * OfBlock(noise));
}

float DarkStack::Weight(const DarkExposure& exposure) {
    const float deviation = OfBlock(exposure.noise.pixel) / exposure.gain;
    return 1 / (deviation * deviation);
}

void DarkStack::StartWith(const DarkExposure& exposure) {
    reference_.resize(kColumns);
    std::ranges::transform(exposure.columns, reference_.begin(),
                           [&](float level) { return level / exposure.gain; });
    shift_.assign(kHalves, 0);
    sum_ = MakeGrid(0);
    highest_ = MakeGrid(-1e30F);
    highest_from_ = MakeGrid(0);
    above_.assign(std::size_t{kPatches} * kColumns, 0);
    below_ = above_;
    spread_.assign(above_.size(), 0);
}

/// The offset of each half of the exposure from the reference.
std::vector<float> DarkStack::Shifts(const DarkExposure& exposure) const {
    std::vector<float> shifts;
    for (const std::size_t begin : {std::size_t{0}, std::size_t{kHalf}}) {
        std::vector<float> differences;
        for (std::size_t x = begin; x < begin + kHalf; ++x) {
            differences.push_back((exposure.columns[x] / exposure.gain) - reference_[x]);
        }
        shifts.push_back(statistics::Median(differences));
    }
    return shifts;
}

void DarkStack::Add(const BlockMeans& blocks, DarkExposure exposure) {
    exposure.noise.pixel = std::max(exposure.noise.pixel, kLeastNoise);
    exposure.noise.with_rows = std::max(exposure.noise.with_rows, exposure.noise.pixel);
    if (exposures_.empty()) {
        StartWith(exposure);
    }
    const std::vector<float> shifts = Shifts(exposure);
    std::vector<float> base(reference_);
    for (std::size_t x = 0; x < base.size(); ++x) {
        base[x] += shifts[x < kHalf ? 0 : 1];
    }
    for (std::size_t half = 0; half < shifts.size(); ++half) {
        shift_[half] += Weight(exposure) * shifts[half];
    }
    weight_ += Weight(exposure);
    AddBlocks(blocks, exposure, base);
    CountPatches(blocks, exposure, base);
    exposures_.push_back(std::move(exposure));
}

void DarkStack::AddBlocks(const BlockMeans& blocks, const DarkExposure& exposure,
                          std::span<const float> base) {
    const float weight = Weight(exposure);
    const float share = 1 / exposure.gain;
    const float in_deviations = 1 / BlockDeviation(exposure);
    const auto number = static_cast<float>(exposures_.size());
    for (int block = 0; block < kBlocks; ++block) {
        const std::size_t first = static_cast<std::size_t>(block) * kColumns;
        const float* const row = blocks.means.data() + first;
        const float* __restrict const above_what = base.data();
        float* __restrict const sum = sum_.data() + first;
        float* __restrict const highest = highest_.data() + first;
        float* __restrict const highest_from = highest_from_.data() + first;
        for (std::size_t x = 0; x < kColumns; ++x) {
            const float above = (row[x] * share) - above_what[x];
            const float z = above * in_deviations;
            sum[x] += weight * above;
            const float high = std::max(highest[x], z);
            highest[x] = high;
            highest_from[x] = high <= z ? number : highest_from[x];
        }
    }
}

void DarkStack::CountPatches(const BlockMeans& blocks, const DarkExposure& exposure,
                             std::span<const float> base) {
    constexpr float clearly = 2.5F;
    constexpr float most_spread = 4;
    constexpr std::size_t next = kColumns;  // from a block to the next one of its column
    const float share = 1 / (exposure.gain * kPatchBlocks);
    const float in_deviations = std::sqrt(static_cast<float>(kPatchBlocks)) / BlockDeviation(exposure);
    const float in_noise = 1 / exposure.noise.with_rows;
    for (int patch = 0; patch < kPatches; ++patch) {
        const std::size_t first = PatchIndex(0, patch);
        const float* const row = Row(blocks.means, patch * kPatchBlocks).data();
        const float* __restrict const against = base.data();
        const std::uint16_t* __restrict const varies = blocks.spread.data() + first;
        float* __restrict const above = above_.data() + first;
        float* __restrict const below = below_.data() + first;
        float* __restrict const spread = spread_.data() + first;
        for (std::size_t x = 0; x < kColumns; ++x) {
            const float sum = row[x] + row[x + next] + row[x + (2 * next)] + row[x + (3 * next)];
            const float z = ((sum * share) - against[x]) * in_deviations;
            above[x] += z > clearly ? 1.0F : 0.0F;
            below[x] += z < -clearly ? 1.0F : 0.0F;
            spread[x] += std::min(static_cast<float>(varies[x]) * in_noise, most_spread);
        }
    }
}

Grid DarkStack::Combined() const {
    constexpr float far = 5;  // deviations
    std::vector<float> weights;
    std::vector<float> deviations;
    for (const DarkExposure& exposure : exposures_) {
        weights.push_back(Weight(exposure));
        deviations.push_back(BlockDeviation(exposure));
    }
    Grid combined = MakeGrid(0);
    for (std::size_t i = 0; i < combined.size(); ++i) {
        float sum = sum_[i];
        float weight = weight_;
        // Leaves out `z` of exposure `number` if it is far from the mean of the others.
        const auto leave_out = [&](float z, std::size_t number) {
            const float value = z * deviations[number];
            const float rest_weight = weight - weights[number];
            if (rest_weight <= 0.001F * weight_) {
                return;
            }
            const float rest = (sum - (weights[number] * value)) / rest_weight;
            const float expected = std::sqrt((deviations[number] * deviations[number]) + (1 / rest_weight));
            if (value - rest > far * expected) {
                sum -= weights[number] * value;
                weight = rest_weight;
            }
        };
        if (weights.size() > 1) {
            leave_out(highest_[i], static_cast<std::size_t>(highest_from_[i]));
        }
        combined[i] = sum / weight;
    }
    return combined;
}

std::vector<float> DarkStack::Reference() const {
    std::vector<float> reference = reference_;
    for (std::size_t x = 0; x < reference.size(); ++x) {
        reference[x] += shift_[x < kHalf ? 0 : 1] / weight_;
    }
    return reference;
}

float DarkStack::BlockNoise() const {
    return 1 / std::sqrt(weight_);
}

float DarkStack::Spread(int column, int patch) const {
    return spread_[PatchIndex(column, patch)] / static_cast<float>(exposures_.size());
}
