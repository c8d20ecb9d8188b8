// SPDX-License-Identifier: MIT
#include "system/sha256.h"

#include <windows.h>
#include <bcrypt.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <new>

#include "base/hex_digits.h"

namespace {

constexpr std::size_t kSumBytes = 32;

/// Whether a call was successful.
bool Succeeded(NTSTATUS status) {
    return status >= 0;
}

/// What computes SHA-256: opened once, and closed by Windows at the end of the program.
BCRYPT_ALG_HANDLE Algorithm() {
    static BCRYPT_ALG_HANDLE const algorithm = [] {
        BCRYPT_ALG_HANDLE opened = nullptr;
        if (!Succeeded(::BCryptOpenAlgorithmProvider(&opened, BCRYPT_SHA256_ALGORITHM, nullptr, 0))) {
            throw std::bad_alloc();
        }
        return opened;
    }();
    return algorithm;
}

BCRYPT_HASH_HANDLE Begin() {
    BCRYPT_HASH_HANDLE sum = nullptr;
    if (!Succeeded(::BCryptCreateHash(Algorithm(), &sum, nullptr, 0, nullptr, 0, 0))) {
        throw std::bad_alloc();
    }
    return sum;
}

/// The calls take bytes that they do not change by a pointer that would let them.
PUCHAR Bytes(std::span<const std::uint8_t> bytes) {
    return const_cast<PUCHAR>(bytes.data());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
}

}  // namespace

struct Sha256::State {
    BCRYPT_HASH_HANDLE sum = Begin();
};

Sha256::Sha256() : state_(std::make_unique<State>()) {}

Sha256::~Sha256() {
    ::BCryptDestroyHash(state_->sum);
}

void Sha256::Add(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t most = std::numeric_limits<ULONG>::max();
    while (!bytes.empty()) {
        const auto part = bytes.first(std::min(bytes.size(), most));
        if (!Succeeded(::BCryptHashData(state_->sum, Bytes(part), static_cast<ULONG>(part.size()), 0))) {
            throw std::bad_alloc();
        }
        bytes = bytes.subspan(part.size());
    }
}

std::string Sha256::Hex() {
    std::array<std::uint8_t, kSumBytes> sum = {};
    if (!Succeeded(::BCryptFinishHash(state_->sum, sum.data(), static_cast<ULONG>(sum.size()), 0))) {
        throw std::bad_alloc();
    }
    return HexDigits(sum);
}
