// SPDX-License-Identifier: MIT
#include "calibrate/number_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

std::string Fixed(float value, int decimals) {
    constexpr std::size_t longest = 64;  // a float has up to 39 digits before the point
    std::array<char, longest> text = {};
    const int length = std::snprintf(text.data(), text.size(), "%.*f", decimals, static_cast<double>(value));
    return {text.data(), static_cast<std::size_t>(std::clamp(length, 0, static_cast<int>(longest) - 1))};
}

std::string Signed(float value, int decimals) {
    return (value < 0 ? "" : "+") + Fixed(value, decimals);
}
