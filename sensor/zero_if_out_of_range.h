// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_ZERO_IF_OUT_OF_RANGE_H
#define VELMARCON_SENSOR_ZERO_IF_OUT_OF_RANGE_H

#include <cmath>

/// `level` if an int can hold it; otherwise 0, which leaves a pixel unchanged. For loops over pixels.
[[gnu::always_inline]] inline float ZeroIfOutOfRange(float level) {
    constexpr float limit = 2147483648.0F;
    return std::abs(level) < limit ? level : 0.0F;
}

#endif  // VELMARCON_SENSOR_ZERO_IF_OUT_OF_RANGE_H
