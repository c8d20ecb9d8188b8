// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_TRUNCATE_H
#define VELMARCON_BASE_TRUNCATE_H

#include <concepts>
#include <limits>

/// The integer part of `value`, truncated toward zero. Returns 0 for NaN, and the nearest end of T's range
/// for a value outside it. T has at most 32 bits, so that a double holds both ends exactly.
template <std::integral T>
constexpr T Truncate(double value) {
    static_assert(sizeof(T) <= 4);
    constexpr double lowest = std::numeric_limits<T>::min();
    constexpr double highest = std::numeric_limits<T>::max();
    if (!(value > lowest)) {
        return value <= lowest ? std::numeric_limits<T>::min() : T{0};
    }
    return value >= highest ? std::numeric_limits<T>::max() : static_cast<T>(value);
}

#endif  // VELMARCON_BASE_TRUNCATE_H
