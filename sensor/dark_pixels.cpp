// SPDX-License-Identifier: MIT
#include "sensor/dark_pixels.h"

#include <algorithm>
#include <array>
#include <limits>

#include "base/pixel.h"

namespace {

constexpr std::size_t kLanes = 32;  ///< pixels in one vector step; every second one is a sample

/// Counts the first pixel of every pair in blocks of kLanes pixels. The lanes have 16 bits, which hold the
/// sums of kMostBlocks blocks.
struct CountBlocks {
    static constexpr std::size_t kMostBlocks = 512;

    [[gnu::always_inline]] static DarkPixels Run(const Pixel* pixels, std::size_t blocks,
                                                 std::uint16_t threshold) {
        std::array<std::uint16_t, kLanes> sums = {};
        std::array<std::uint16_t, kLanes> counts = {};
        for (std::size_t block = 0; block < blocks; ++block) {
            for (std::size_t i = 0; i < kLanes; ++i) {
                const Pixel pixel = pixels[block * kLanes + i];
                const bool is_dark = pixel < threshold;
                sums[i] = static_cast<std::uint16_t>(sums[i] + (is_dark ? pixel : 0));
                counts[i] = static_cast<std::uint16_t>(counts[i] + (is_dark ? 1 : 0));
            }
        }
        DarkPixels dark;
        for (std::size_t i = 0; i < kLanes; i += 2) {
            dark.sum += sums[i];
            dark.count += counts[i];
        }
        return dark;
    }
};
static_assert(CountBlocks::kMostBlocks * (DarkPixels::kHighestThreshold - 1) <=
              std::numeric_limits<std::uint16_t>::max());

}  // namespace

DarkPixels CountDark(std::span<const Pixel> pixels, std::size_t start, std::size_t samples,
                     std::uint16_t threshold, InstructionSet version) {
    DarkPixels dark;
    if (start >= pixels.size()) {
        return dark;
    }
    const Pixel* pixel = &pixels[start];
    std::size_t left = std::min(samples, (pixels.size() - start + 1) / 2);
    // The neighbour of the last sample may lie outside the image, so that sample is left to the loop below.
    while (2 * left > kLanes) {
        const std::size_t blocks = std::min((2 * left - 1) / kLanes, CountBlocks::kMostBlocks);
        dark += instruction_set::Run<CountBlocks>(version, pixel, blocks, threshold);
        pixel += blocks * kLanes;
        left -= blocks * kLanes / 2;
    }
    for (std::size_t i = 0; i < left; ++i) {
        const bool is_dark = pixel[2 * i] < threshold;
        dark += {is_dark ? pixel[2 * i] : 0U, is_dark ? 1U : 0U};
    }
    return dark;
}
