// SPDX-License-Identifier: MIT
#include "calibrate/segments.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "calibrate/statistics.h"

namespace segments {

namespace {

constexpr float kMostOfOne = 4;       // limit for the weight of a single value
constexpr float kSignificant = 6.7F;  // exceeded by chance in one interval of a thousand million
// For the quick look, whose windows are up to a third too long or too short.
constexpr float kWorthALook = 5.4F;

/// Sums of the first 0, 1, 2 ... values, relative to `centre`.
std::vector<float> PrefixSums(std::span<const float> values, float centre) {
    std::vector<float> sums = {0};
    sums.reserve(values.size() + 1);
    for (const float value : values) {
        sums.push_back(sums.back() + std::clamp(value - centre, -kMostOfOne, kMostOfOne));
    }
    return sums;
}

/// Sum of the `length` values from `begin` on.
float SumOf(std::span<const float> prefix_sums, int begin, int length) {
    const auto first = static_cast<std::size_t>(begin);
    return prefix_sums[first + static_cast<std::size_t>(length)] - prefix_sums[first];
}

struct Interval {
    int begin = 0;
    int end = 0;
    float contrast = 0;  // in standard deviations
};

/// How far the sum of an interval is from `expected`.
float Distance(std::span<const float> prefix_sums, int begin, int length, float expected) {
    return std::abs(SumOf(prefix_sums, begin, length) - expected);
}

/// The largest Distance of the intervals of this length. In lanes, of which the compiler makes vectors.
float LargestDistance(std::span<const float> prefix_sums, int length, float expected) {
    constexpr std::size_t lanes = 16;
    std::array<float, lanes> largest_of_lanes = {};
    const std::size_t count = prefix_sums.size() - static_cast<std::size_t>(length);
    // Bare pointers, because index checks would prevent vectorisation.
    const float* const before = prefix_sums.data();
    const float* const after = before + length;
    float* const largest = largest_of_lanes.data();
    std::size_t begin = 0;
    for (; begin + lanes <= count; begin += lanes) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const float distance = std::abs(after[begin + lane] - before[begin + lane] - expected);
            largest[lane] = std::max(largest[lane], distance);
        }
    }
    for (; begin < count; ++begin) {
        largest[0] = std::max(largest[0], std::abs(after[begin] - before[begin] - expected));
    }
    return *std::ranges::max_element(largest_of_lanes);
}

/// The interval that differs most from the rest; of equal ones the shortest, and of these the first.
Interval MostDifferent(std::span<const float> values) {
    std::vector<float> copy(values.begin(), values.end());
    const std::vector<float> sums = PrefixSums(values, statistics::Median(copy));
    const int count = static_cast<int>(values.size());
    const float mean = sums.back() / static_cast<float>(count);
    Interval best;
    for (int length = 1; length < count; ++length) {
        const auto size = static_cast<float>(length);
        const float scale = 1 / std::sqrt(size * (1 - (size / static_cast<float>(count))));
        const float contrast = LargestDistance(sums, length, size * mean) * scale;
        if (contrast > best.contrast) {
            int begin = 0;
            while (begin + length < count && Distance(sums, begin, length, size * mean) * scale < contrast) {
                ++begin;
            }
            best = {begin, begin + length, contrast};
        }
    }
    return best;
}

/// The ends of the segments, in ascending order.
std::vector<int> EndsOf(std::span<const float> values) {
    std::vector<int> ends;
    std::vector<Interval> left = {
        {0, static_cast<int>(values.size())}};  // still to be examined, the last one first
    while (!left.empty()) {
        const Interval part = left.back();
        left.pop_back();
        const int count = part.end - part.begin;
        const Interval cut = count > 1 ? MostDifferent(values.subspan(static_cast<std::size_t>(part.begin),
                                                                      static_cast<std::size_t>(count)))
                                       : Interval{};
        if (cut.contrast < kSignificant) {
            ends.push_back(part.end);
            continue;
        }
        const int begin = part.begin + cut.begin;
        const int end = part.begin + cut.end;
        for (const Interval piece : {Interval{end, part.end}, {begin, end}, {part.begin, begin}}) {
            if (piece.end > piece.begin) {
                left.push_back(piece);
            }
        }
    }
    return ends;
}

}  // namespace

bool MayChange(std::span<const float> values) {
    std::vector<float> some;
    constexpr std::size_t step = 7;
    for (std::size_t i = 0; i < values.size(); i += step) {
        some.push_back(values[i]);
    }
    const std::vector<float> sums = PrefixSums(values, statistics::Median(some));
    const int count = static_cast<int>(values.size());
    for (int length = 2; length < count; length *= 2) {
        const float limit = kWorthALook * std::sqrt(static_cast<float>(length));
        for (int begin = 0; begin + length <= count; ++begin) {
            const float sum = SumOf(sums, begin, length);
            if (std::abs(sum) > limit) {
                return true;
            }
        }
    }
    return false;
}

std::vector<Segment> Find(std::span<const float> values) {
    std::vector<Segment> found;
    int begin = 0;
    for (const int end : EndsOf(values)) {
        const auto part =
            values.subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
        std::vector<float> copy(part.begin(), part.end());
        found.push_back({begin, end, statistics::Median(copy)});
        begin = end;
    }
    return found;
}

}  // namespace segments
