// SPDX-License-Identifier: MIT
#include "tests/support/damage.h"

#include <algorithm>
#include <array>
#include <random>

namespace support {

namespace {

constexpr std::array<std::uint32_t, 12> kLimits = {
    0, 1, 2, 4, 0x7F, 0xFF, 0x7FFF, 0xFFFF, 0x10000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

}  // namespace

std::vector<std::uint8_t> Damaged(std::vector<std::uint8_t> bytes, std::size_t begin, std::size_t end,
                                  std::uint32_t seed) {
    // The standard fixes the sequence of the engine, but not that of the distributions.
    std::mt19937 engine(seed);
    const auto random = [&engine] { return static_cast<std::uint32_t>(engine()); };
    const std::uint32_t places = 1 + random() % 8;
    for (std::uint32_t i = 0; i < places; ++i) {
        const std::size_t place = begin + random() % (end - begin);
        const std::size_t size = std::min<std::size_t>(std::size_t{1} << random() % 3, end - place);
        std::uint32_t value = random() % 2 == 0 ? random() : kLimits.at(random() % kLimits.size());
        for (std::size_t k = 0; k < size; ++k, value >>= 8U) {
            bytes[place + k] = static_cast<std::uint8_t>(value);
        }
    }
    return bytes;
}

}  // namespace support
