// SPDX-License-Identifier: MIT
#include "sensor/dither.h"

#include <cstdlib>

namespace {

/// A number of 30 or 31 random bits.
std::uint32_t LibraryNumber() {
    constexpr int few_bits = 0x7FFF;                        // RAND_MAX on Windows
    auto number = static_cast<std::uint32_t>(std::rand());  // NOLINT(cert-msc30-c,cert-msc50-cpp)
    if constexpr (RAND_MAX == few_bits) {
        number =
            number << 15U | static_cast<std::uint32_t>(std::rand());  // NOLINT(cert-msc30-c,cert-msc50-cpp)
    }
    return number;
}

/// Spreads the bits of the library's number over all 32 bits (with the finaliser of MurmurHash3), so that
/// neighbouring seeds give unrelated states. Never returns 0, which a generator cannot leave.
std::uint32_t Seed() {
    std::uint32_t x = LibraryNumber();
    x ^= x >> 16U;
    x *= 0x85EBCA6BU;
    x ^= x >> 13U;
    x *= 0xC2B2AE35U;
    x ^= x >> 16U;
    return x != 0 ? x : 1;
}

}  // namespace

Dither::Dither() {
    for (std::uint32_t& generator : generators_) {
        generator = Seed();
    }
}

void Dither::Fill(std::span<float> values) {
    constexpr float unit = 1.0F / 65536.0F;
    Generators generators = generators_;
    for (std::size_t start = 0; start + kLanes <= values.size(); start += kLanes) {
        float* const next = &values[start];
        const Numbers numbers = Step(generators);
        for (std::size_t i = 0; i < kLanes; ++i) {
            next[i] = static_cast<float>(numbers[i]) * unit;
        }
    }
    generators_ = generators;
}
