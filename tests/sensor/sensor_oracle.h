// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SENSOR_SENSOR_ORACLE_H
#define VELMARCON_TESTS_SENSOR_SENSOR_ORACLE_H

#include <cstdint>
#include <functional>
#include <vector>

#include "sensor/row_offsets.h"

/// The sensor corrections as plain loops over single pixels, for comparison with the fast code.
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

/// Whether the dark pixels of the even rows add up to less than those of the odd rows.
bool EvenRowsAreDarker(const Frame& frame);

RowOffsets Offsets(const Frame& frame);

/// The pixels after subtraction of `correction` and of the row offsets.
std::vector<std::uint16_t> WithoutDarkField(const Frame& frame, const std::vector<float>& correction,
                                            int gain);

/// The pixels after dithered subtraction: each loses the whole part of its column's level plus a random
/// number in [0, 1), in 16 bits, but stops at 0.
std::vector<std::uint16_t> Dithered(const Frame& frame, const std::vector<float>& levels,
                                    const std::function<float()>& random);

/// Replaces the pixel at column `x`, row `y`.
void Interpolate(Frame& frame, int x, int y);

/// The dark levels of the columns, from 16-bit sums.
std::vector<float> ColumnLevels(const Frame& frame);

}  // namespace oracle

#endif  // VELMARCON_TESTS_SENSOR_SENSOR_ORACLE_H
