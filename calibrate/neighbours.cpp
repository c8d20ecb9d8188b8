// SPDX-License-Identifier: MIT
#include "calibrate/neighbours.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "calibrate/sensor_grid.h"
#include "calibrate/statistics.h"

namespace {

constexpr int kSameColour = 2;
constexpr std::size_t kMost = 8;  // per side

struct Side {
    std::array<float, 2 * kMost> values = {};
    std::size_t count = 0;

    void Add(float value) { values.at(count++) = value; }
    float Median() { return statistics::Median(std::span(values).first(count)); }
};

}  // namespace

std::vector<StandOut> CompareNeighbours(std::span<const float> values, int reach, bool by_halves) {
    const int count = static_cast<int>(values.size());
    std::vector<StandOut> result(values.size());
    for (int x = 0; x < count; ++x) {
        const int begin = by_halves ? sensor_grid::HalfBegin(x) : 0;
        const int end = by_halves ? sensor_grid::HalfEnd(x) : count;
        Side left;
        Side right;
        Side both;
        for (int i = 1; i <= reach; ++i) {
            const int before = x - (i * kSameColour);
            const int after = x + (i * kSameColour);
            if (before >= begin) {
                left.Add(values[static_cast<std::size_t>(before)]);
                both.Add(values[static_cast<std::size_t>(before)]);
            }
            if (after < end) {
                right.Add(values[static_cast<std::size_t>(after)]);
                both.Add(values[static_cast<std::size_t>(after)]);
            }
        }
        const float own = values[static_cast<std::size_t>(x)];
        StandOut& out = result[static_cast<std::size_t>(x)];
        out.from_both = own - both.Median();
        const float above_left = left.count > 0 ? own - left.Median() : out.from_both;
        const float above_right = right.count > 0 ? own - right.Median() : out.from_both;
        if ((above_left > 0) == (above_right > 0)) {
            out.clearly = std::abs(above_left) < std::abs(above_right) ? above_left : above_right;
        }
    }
    return result;
}
