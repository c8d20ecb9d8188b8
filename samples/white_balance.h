// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_WHITE_BALANCE_H
#define VELMARCON_SAMPLES_WHITE_BALANCE_H

#include <array>
#include <cstdint>
#include <string_view>

#include "samples/shot.h"

namespace samples {

/// One of the camera's white balances: the divisors of red and blue, relative to 16384 for green.
struct WhiteBalance {
    std::string_view name;
    std::uint32_t red;
    std::uint32_t blue;
};

constexpr std::array<WhiteBalance, 5> kWhiteBalances = {{
    {"cloudy", 35008, 19140},
    {"daylight", 32899, 20791},
    {"flash", 35463, 19297},
    {"fluorescent", 27125, 33921},
    {"shade", 36008, 18204},
}};

/// Sets the levels of `shot` to 16384 divided by each number of `balance`.
inline void SetWhiteBalance(Shot& shot, const WhiteBalance& balance) {
    constexpr std::uint32_t kOne = 16384;
    shot.level_red = {kOne, balance.red};
    shot.level_green = {kOne, kOne};
    shot.level_blue = {kOne, balance.blue};
}

}  // namespace samples

#endif  // VELMARCON_SAMPLES_WHITE_BALANCE_H
