// SPDX-License-Identifier: MIT
#include "calibrate/statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace statistics {

namespace {

constexpr float kDeviationOfMad = 1.4826F;  // for a normal distribution

}  // namespace

float Median(std::span<float> values) {
    if (values.empty()) {
        return 0;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 != 0) {
        return *middle;
    }
    return (*std::max_element(values.begin(), middle) + *middle) / 2;
}

float DeviationAround(float centre, std::span<float> values) {
    for (float& value : values) {
        value = std::abs(value - centre);
    }
    return kDeviationOfMad * Median(values);
}

float Deviation(std::span<float> values) {
    const float centre = Median(values);
    return DeviationAround(centre, values);
}

float ClippedMean(std::span<const float> values, float centre, float reach) {
    double sum = 0;
    for (const float value : values) {
        sum += static_cast<double>(std::clamp(value - centre, -reach, reach));
    }
    return values.empty() ? centre : centre + static_cast<float>(sum / static_cast<double>(values.size()));
}

float DifferenceHistogram::Deviation() const {
    std::uint64_t total = 0;
    for (const std::uint32_t count : counts_) {
        total += count;
    }
    const double half = static_cast<double>(total) / 2;
    double below = 0;
    for (std::size_t size = 0; size < kBins; ++size) {
        const double count = counts_[size];
        if (count > 0 && below + count >= half) {
            // Bin 0 reaches from 0 to 1/2, bin n from n - 1/2 to n + 1/2.
            const double width = size == 0 ? 0.5 : 1;
            const double start = size == 0 ? 0 : static_cast<double>(size) - 0.5;
            return kDeviationOfMad * static_cast<float>(start + width * (half - below) / count);
        }
        below += count;
    }
    return 0;
}

}  // namespace statistics
