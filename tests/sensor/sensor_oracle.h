// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SENSOR_SENSOR_ORACLE_H
#define VELMARCON_TESTS_SENSOR_SENSOR_ORACLE_H

#include <cstdint>
#include <functional>
#include <vector>

#include "sensor/row_offsets.h"

/// The sensor corrections as plain loops, one pixel after the other, to compare the fast code with.
namespace oracle {

struct Frame {
    int width = 0;
    int height = 0;
    std::vector<std::uint16_t> pixels = {};

    std::uint16_t& At(int x, int y) {
        const int index = y * width + x;
        return pixels.at(static_cast<std::size_t>(index));
    }
};

/// Pixels from `lowest` to `lowest` + `range` - 1; the same seed gives the same frame everywhere.
Frame RandomFrame(int width, int height, std::uint32_t seed, std::uint32_t lowest, std::uint32_t range);

/// Whether the even rows' dark pixels add up to less than the odd rows'.
bool EvenRowsAreDarker(const Frame& frame);

RowOffsets Offsets(const Frame& frame);

/// What the subtraction of `correction` and of the row offsets leaves.
std::vector<std::uint16_t> WithoutDarkField(const Frame& frame, const std::vector<float>& correction,
                                            int gain);

/// What the dithered subtraction leaves: from each pixel the whole part of its column's level and of a random
/// number in [0, 1), in 16 bits and not below 0.
std::vector<std::uint16_t> Dithered(const Frame& frame, const std::vector<float>& levels,
                                    const std::function<float()>& random);

/// Replaces the pixel at column `x`, row `y`.
void Interpolate(Frame& frame, int x, int y);

/// Dark levels of the columns, of sums in 16 bits.
std::vector<float> ColumnLevels(const Frame& frame);

}  // namespace oracle

#endif  // VELMARCON_TESTS_SENSOR_SENSOR_ORACLE_H
