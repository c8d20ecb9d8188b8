// SPDX-License-Identifier: MIT
#include "sensor/dither.h"

#include <cstdlib>

namespace {

/// Spreads the 31 bits of the library's number over all 32 (the finaliser of MurmurHash3): neighbouring seeds
/// become unrelated states. Never 0, from which a generator could not move.
std::uint32_t Seed() {
    auto x = static_cast<std::uint32_t>(std::rand());  // NOLINT(cert-msc30-c,cert-msc50-cpp)
    x ^= x >> 16U;
    x *= 0x85EBCA6BU;
    x ^= x >> 13U;
    x *= 0xC2B2AE35U;
    x ^= x >> 16U;
    return x != 0 ? x : 1;
}

}  // namespace

Dither::Dither() {
    for (std::uint32_t& lane : lanes_) {
        lane = Seed();
    }
}

void Dither::Fill(std::span<float> values) {
    constexpr unsigned int unused_bits = 8;  // a float holds 24
    constexpr float unit = 1.0F / (1U << 24U);
    auto lanes = lanes_;
    for (std::size_t start = 0; start + kLanes <= values.size(); start += kLanes) {
        float* const next = &values[start];
        for (std::size_t i = 0; i < kLanes; ++i) {
            std::uint32_t x = lanes[i];
            x ^= x << 13U;
            x ^= x >> 17U;
            x ^= x << 5U;
            lanes[i] = x;
            // A signed number converts in one instruction.
            next[i] = static_cast<float>(static_cast<std::int32_t>(x >> unused_bits)) * unit;
        }
    }
    lanes_ = lanes;
}
