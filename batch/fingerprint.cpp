// SPDX-License-Identifier: MIT
#include "batch/fingerprint.h"

#include <array>
#include <bit>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;  ///< odd: no two words become the same
constexpr std::size_t kLanes = 4;
constexpr std::size_t kWord = sizeof(std::uint64_t);
constexpr int kTurn = 29;

/// Each step can be undone, so that a single changed word changes the result.
std::uint64_t Mix(std::uint64_t state, std::uint64_t word) {
    return std::rotl((state ^ word) * kFactor, kTurn);
}

/// In the order of this machine; little-endian ones are all that run this.
std::uint64_t WordAt(const std::uint8_t* bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, kWord);
    return word;
}

}  // namespace

std::string Fingerprint(std::span<const std::uint8_t> bytes) {
    std::array<std::uint64_t, kLanes> lanes = {1, 2, 3, 4};
    const std::size_t blocks = bytes.size() / (kLanes * kWord);
    const std::uint8_t* at = bytes.data();
    for (std::size_t block = 0; block < blocks; ++block) {
        for (std::uint64_t& lane : lanes) {
            lane = Mix(lane, WordAt(at));
            at += kWord;
        }
    }
    std::uint64_t state = bytes.size();
    for (const std::uint64_t lane : lanes) {
        state = Mix(state, lane);
    }
    for (const std::uint8_t byte : bytes.subspan(blocks * kLanes * kWord)) {
        state = Mix(state, byte);
    }
    std::array<char, 2 * kWord + 1> text = {};
    (void)std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(state));
    return text.data();
}
