// SPDX-License-Identifier: MIT
#include "dng/linearization.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "tests/sensor/versions.h"

namespace {

/// Neither byte of an entry follows from the other, and no two entries are equal.
LinearizationTable DistinctEntries() {
    LinearizationTable table = {};
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = static_cast<std::uint16_t>(65535 - i * 251);
    }
    return table;
}

/// Every sample occurs at every position within 64.
std::vector<std::uint8_t> Samples(std::size_t count) {
    std::vector<std::uint8_t> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = static_cast<std::uint8_t>(i + i / 256);
    }
    return samples;
}

TEST(Linearize, LooksUpEverySampleInEveryVersion) {
    constexpr std::size_t count = 64UL * 256;
    const LinearizationTable table = DistinctEntries();
    const auto samples = Samples(count);
    for (const InstructionSet version : AvailableVersions()) {
        std::vector<Pixel> pixels(count);
        Linearize(samples, table, pixels, version);
        for (std::size_t i = 0; i < count; ++i) {
            ASSERT_EQ(pixels[i], table.at(samples[i])) << i << ", version " << static_cast<int>(version);
        }
    }
}

TEST(Linearize, WritesAsManyPixelsAsThereAreSamples) {
    constexpr Pixel untouched = 7;
    const LinearizationTable table = DistinctEntries();
    for (const InstructionSet version : AvailableVersions()) {
        for (std::size_t count = 0; count <= 100; ++count) {
            const auto samples = Samples(count);
            std::vector<Pixel> pixels(count + 1, untouched);
            Linearize(samples, table, std::span(pixels).first(count), version);
            for (std::size_t i = 0; i < count; ++i) {
                ASSERT_EQ(pixels[i], table.at(samples[i])) << i << " of " << count;
            }
            ASSERT_EQ(pixels.back(), untouched) << count;
        }
    }
}

}  // namespace
