// SPDX-License-Identifier: MIT
#include "sensor/dark_pixels.h"

#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "tests/sensor/sensor_oracle.h"
#include "tests/sensor/versions.h"

namespace {

using Pixels = std::vector<std::uint16_t>;
using Sizes = std::vector<std::size_t>;

DarkPixels PlainCount(const Pixels& pixels, std::size_t start, std::size_t samples, std::uint16_t threshold) {
    DarkPixels dark;
    for (std::size_t i = 0; i < samples && start + 2 * i < pixels.size(); ++i) {
        const std::uint16_t pixel = pixels[start + 2 * i];
        if (pixel < threshold) {
            dark += {pixel, 1};
        }
    }
    return dark;
}

TEST(CountDark, CountsEverySecondPixelBelowTheThreshold) {
    const Pixels pixels = {1, 10, 99, 20, 100, 30, 7};
    const DarkPixels from_the_first = CountDark(pixels, 0, 4, 100);
    EXPECT_EQ(from_the_first.sum, 107U);
    EXPECT_EQ(from_the_first.count, 3U);
    const DarkPixels from_the_second = CountDark(pixels, 1, 2, 100);
    EXPECT_EQ(from_the_second.sum, 30U);
    EXPECT_EQ(from_the_second.count, 2U);
}

TEST(CountDark, EqualsThePlainLoopInEveryVersion) {
    const Pixels pixels = oracle::RandomFrame(4000, 1, 7, 60, 80).pixels;
    for (const InstructionSet version : AvailableVersions()) {
        for (const std::size_t start : Sizes{0, 1, 5, 3967, 3999, 4000, 4001}) {
            for (const std::size_t samples : Sizes{0, 1, 15, 16, 17, 31, 32, 33, 992, 1984, 5000}) {
                for (const std::uint16_t threshold : {std::uint16_t{100}, std::uint16_t{111}}) {
                    const DarkPixels dark = CountDark(pixels, start, samples, threshold, version);
                    const DarkPixels plain = PlainCount(pixels, start, samples, threshold);
                    ASSERT_EQ(dark.sum, plain.sum) << start << ", " << samples << ", " << threshold;
                    ASSERT_EQ(dark.count, plain.count) << start << ", " << samples << ", " << threshold;
                }
            }
        }
    }
}

TEST(CountDark, HoldsTheLargestSumsOfAWideRow) {
    constexpr std::size_t samples = 40000;
    const Pixels pixels(2 * samples, 110);
    for (const InstructionSet version : AvailableVersions()) {
        const DarkPixels dark = CountDark(pixels, 0, samples, 111, version);
        EXPECT_EQ(dark.sum, 110 * samples);
        EXPECT_EQ(dark.count, samples);
    }
}

}  // namespace
