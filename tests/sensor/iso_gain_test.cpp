// SPDX-License-Identifier: MIT
#include "sensor/iso_gain.h"

#include <array>
#include <vector>

#include <gtest/gtest.h>

namespace {

TEST(IsoGain, IsAboveOneOnlyAtTheFourHigherSpeeds) {
    constexpr std::array<std::uint16_t, 5> gains = {1, 2, 4, 8, 16};
    constexpr std::array<std::uint16_t, 5> speeds = {160, 320, 640, 1250, 2500};
    for (std::size_t i = 0; i < speeds.size(); ++i) {
        EXPECT_EQ(IsoGain(speeds[i]), gains[i]) << speeds[i];
    }
    const std::vector<std::uint16_t> others = {0,    159,  200,  319,  321,  639,  641,
                                               1249, 1251, 1280, 2499, 2501, 65535};
    for (const std::uint16_t other : others) {
        EXPECT_EQ(IsoGain(other), 1) << other;
    }
}

}  // namespace
