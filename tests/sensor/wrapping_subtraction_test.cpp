// SPDX-License-Identifier: MIT
#include "sensor/wrapping_subtraction.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/sensor/sensor_oracle.h"
#include "tests/sensor/versions.h"

namespace {

using Pixels = std::vector<std::uint16_t>;

TEST(SubtractWrapping, SubtractsTheWholePartAndWraps) {
    for (const InstructionSet version : AvailableVersions()) {
        Pixels row = {10, 10, 10, 10};
        SubtractWrapping(row, std::vector<float>{1.5F, 12, -3, 0}, 0.25F, 2, version);
        EXPECT_EQ(row, (Pixels{7, 65522, 15, 10}));
    }
}

TEST(SubtractWrapping, EqualsThePlainLoopInEveryVersion) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const Pixels numbers = oracle::RandomFrame(101, 1, 3, 0, 65536).pixels;
    std::vector<float> levels;
    for (const std::uint16_t number : numbers) {
        levels.push_back(static_cast<float>(number) / 300 - 100);
    }
    const std::vector<float> special = {2e9F, -2e9F, 3e9F, -3e9F, infinity, std::nanf(""), -0.5F, 65535.9F};
    levels.insert(levels.end(), special.begin(), special.end());
    const Pixels pixels = oracle::RandomFrame(static_cast<int>(levels.size()), 1, 4, 0, 65536).pixels;
    for (const InstructionSet version : AvailableVersions()) {
        for (const float offset : {0.0F, -7.25F, 13.1F, infinity, std::nanf("")}) {
            for (const float gain : {1.0F, 16.0F}) {
                Pixels row = pixels;
                SubtractWrapping(row, levels, offset, gain, version);
                for (std::size_t x = 0; x < row.size(); ++x) {
                    const float v = (levels[x] + offset) * gain;
                    const int level = std::abs(v) < 2147483648.0F ? static_cast<int>(v) : 0;
                    ASSERT_EQ(row[x], static_cast<std::uint16_t>((pixels[x] - level) & 0xFFFF))
                        << levels[x] << " + " << offset << ", x " << gain;
                }
            }
        }
    }
}

}  // namespace
