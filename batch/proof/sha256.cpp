// SPDX-License-Identifier: MIT
#include "batch/proof/sha256.h"

#include <algorithm>
#include <ios>
#include <string_view>
#include <vector>

#include "system/input_file.h"

namespace {

using sha256_blocks::kBlockSize;

/// The last bytes of all, filled up with a 1, zeros and the length in bits: one block or two.
std::vector<std::uint8_t> Padded(std::span<const std::uint8_t> rest, std::uint64_t length) {
    constexpr std::uint8_t one = 0x80;
    constexpr unsigned int bits_per_byte = 8;
    std::vector<std::uint8_t> bytes(rest.begin(), rest.end());
    bytes.push_back(one);
    while (bytes.size() % kBlockSize != kBlockSize - sizeof(length)) {
        bytes.push_back(0);
    }
    for (std::size_t i = sizeof(length); i-- > 0;) {
        bytes.push_back(static_cast<std::uint8_t>(length * bits_per_byte >> (bits_per_byte * i) & 0xFFU));
    }
    return bytes;
}

}  // namespace

void Sha256::Add(std::span<const std::uint8_t> bytes) {
    const auto filled = static_cast<std::size_t>(length_ % kBlockSize);
    length_ += bytes.size();
    if (filled + bytes.size() < kBlockSize) {
        std::ranges::copy(bytes, rest_.begin() + static_cast<std::ptrdiff_t>(filled));
        return;
    }
    if (filled > 0) {
        const auto missing = bytes.first(kBlockSize - filled);
        std::ranges::copy(missing, rest_.begin() + static_cast<std::ptrdiff_t>(filled));
        compress_(state_, rest_);
        bytes = bytes.subspan(missing.size());
    }
    const auto whole = bytes.first(bytes.size() / kBlockSize * kBlockSize);
    compress_(state_, whole);
    std::ranges::copy(bytes.subspan(whole.size()), rest_.begin());
}

std::string Sha256::Hex() const {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr unsigned int digit_bits = 4;
    constexpr std::uint32_t low_digit = 0xF;
    const std::span rest(rest_);
    auto state = state_;
    compress_(state, Padded(rest.first(static_cast<std::size_t>(length_ % kBlockSize)), length_));
    std::string hex;
    for (const std::uint32_t word : state) {
        for (unsigned int shift = 8 * sizeof(word); shift > 0;) {
            shift -= digit_bits;
            hex += digits[word >> shift & low_digit];
        }
    }
    return hex;
}

std::optional<std::string> Sha256OfFile(const std::string& path) {
    constexpr std::size_t part_size = 256UL * 1024;  // stays in the processor's cache
    InputFile file;
    if (!file.Open(path)) {
        return std::nullopt;
    }
    file.stream().seekg(0);
    std::vector<std::uint8_t> memory(part_size);
    Sha256 sum;
    for (std::uint64_t left = file.size(); left > 0;) {
        const auto part =
            std::span(memory).first(static_cast<std::size_t>(std::min<std::uint64_t>(left, memory.size())));
        file.stream().read(reinterpret_cast<char*>(part.data()), static_cast<std::streamsize>(part.size()));
        if (!file.stream()) {
            return std::nullopt;
        }
        sum.Add(part);
        left -= part.size();
    }
    return sum.Hex();
}
