// SPDX-License-Identifier: MIT
#include "batch/fingerprint.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;  ///< odd: no two words become the same
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

void Fingerprint::AddBlocks(std::span<const std::uint8_t> blocks) {
    const std::uint8_t* at = blocks.data();
    std::array<std::uint64_t, kLanes> lanes = lanes_;
    for (std::size_t block = 0; block < blocks.size() / kBlock; ++block) {
        for (std::uint64_t& lane : lanes) {
            lane = Mix(lane, WordAt(at));
            at += kWord;
        }
    }
    lanes_ = lanes;
}

void Fingerprint::Add(std::span<const std::uint8_t> bytes) {
    length_ += bytes.size();
    if (rest_length_ > 0) {
        const std::size_t taken = std::min(kBlock - rest_length_, bytes.size());
        std::ranges::copy(bytes.first(taken), rest_.begin() + static_cast<std::ptrdiff_t>(rest_length_));
        rest_length_ += taken;
        bytes = bytes.subspan(taken);
        if (rest_length_ < kBlock) {
            return;
        }
        AddBlocks(rest_);
    }
    const std::size_t whole = bytes.size() / kBlock * kBlock;
    AddBlocks(bytes.first(whole));
    std::ranges::copy(bytes.subspan(whole), rest_.begin());
    rest_length_ = bytes.size() - whole;
}

std::string Fingerprint::Hex() const {
    std::uint64_t state = length_;
    for (const std::uint64_t lane : lanes_) {
        state = Mix(state, lane);
    }
    for (const std::uint8_t byte : std::span(rest_).first(rest_length_)) {
        state = Mix(state, byte);
    }
    std::array<char, 2 * kWord + 1> text = {};
    (void)std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(state));
    return text.data();
}
