// SPDX-License-Identifier: MIT
#include "system/sha256.h"

#include <new>

#include <gcrypt.h>

#include "base/hex_digits.h"

namespace {

/// The library is told once that its guarded memory, which secrets need, is not wanted.
void StartLibrary() {
    [[maybe_unused]] static const bool started = [] {
        (void)::gcry_check_version(nullptr);
        (void)::gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
        (void)::gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        return true;
    }();
}

gcry_md_hd_t Begin() {
    StartLibrary();
    gcry_md_hd_t sum = nullptr;
    if (::gcry_md_open(&sum, GCRY_MD_SHA256, 0) != 0) {
        throw std::bad_alloc();
    }
    return sum;
}

}  // namespace

struct Sha256::State {
    gcry_md_hd_t sum = Begin();
};

Sha256::Sha256() : state_(std::make_unique<State>()) {}

Sha256::~Sha256() {
    ::gcry_md_close(state_->sum);
}

void Sha256::Add(std::span<const std::uint8_t> bytes) {
    ::gcry_md_write(state_->sum, bytes.data(), bytes.size());
}

std::string Sha256::Hex() {
    return HexDigits({::gcry_md_read(state_->sum, GCRY_MD_SHA256), ::gcry_md_get_algo_dlen(GCRY_MD_SHA256)});
}
