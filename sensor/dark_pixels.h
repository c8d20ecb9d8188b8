// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_DARK_PIXELS_H
#define VELMARCON_SENSOR_DARK_PIXELS_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/pixel.h"
#include "sensor/instruction_set.h"

/// The sum and the number of the pixels below a threshold, in one row. 32 bits are enough for 39 million
/// pixels.
struct DarkPixels {
    /// The highest threshold with which pixels can be counted.
    static constexpr std::uint16_t kHighestThreshold = 111;

    std::uint32_t sum = 0;
    std::uint32_t count = 0;

    DarkPixels& operator+=(const DarkPixels& other) {
        sum += other.sum;
        count += other.count;
        return *this;
    }
};

/// Counts the dark ones among `samples` pixels, every second one from `start` on; samples outside the image
/// do not count. Every version gives the same result.
DarkPixels CountDark(std::span<const Pixel> pixels, std::size_t start, std::size_t samples,
                     std::uint16_t threshold, InstructionSet version = instruction_set::Best());

#endif  // VELMARCON_SENSOR_DARK_PIXELS_H
