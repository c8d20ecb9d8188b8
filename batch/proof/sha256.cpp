// SPDX-License-Identifier: MIT
#include "batch/proof/sha256.h"

#include <gcrypt.h>

#include <algorithm>
#include <cstddef>
#include <ios>
#include <new>
#include <string_view>
#include <vector>

#include "system/input_file.h"

namespace {

/// The library wants to be told once that its guarded memory, which secrets need, is not wanted.
void StartLibrary() {
    static const bool started = [] {
        (void)::gcry_check_version(nullptr);
        (void)::gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
        (void)::gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
        return true;
    }();
    (void)started;
}

std::string HexOf(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr unsigned int digit_bits = 4;
    constexpr std::uint8_t low_digit = 0xF;
    std::string hex;
    for (const std::uint8_t byte : bytes) {
        hex += digits[byte >> digit_bits];
        hex += digits[byte & low_digit];
    }
    return hex;
}

gcry_md_hd_t Open() {
    StartLibrary();
    gcry_md_hd_t state = nullptr;
    if (::gcry_md_open(&state, GCRY_MD_SHA256, 0) != 0) {
        throw std::bad_alloc();
    }
    return state;
}

}  // namespace

void Sha256::Closer::operator()(gcry_md_handle* state) const {
    ::gcry_md_close(state);
}

Sha256::Sha256() : state_(Open()) {}

void Sha256::Add(std::span<const std::uint8_t> bytes) {
    ::gcry_md_write(state_.get(), bytes.data(), bytes.size());
}

std::string Sha256::Hex() const {
    // Reading the sum ends it; so that of a copy is read.
    gcry_md_hd_t copy = nullptr;
    if (::gcry_md_copy(&copy, state_.get()) != 0) {
        throw std::bad_alloc();
    }
    const std::unique_ptr<gcry_md_handle, Closer> owner(copy);
    const std::span sum(::gcry_md_read(copy, GCRY_MD_SHA256), ::gcry_md_get_algo_dlen(GCRY_MD_SHA256));
    return HexOf(sum);
}

std::optional<std::string> Sha256OfFile(const std::string& path) {
    constexpr std::size_t block_size = 256UL * 1024;  // stays in the processor's cache
    InputFile file;
    if (!file.Open(path)) {
        return std::nullopt;
    }
    file.stream().seekg(0);
    std::vector<std::uint8_t> block(block_size);
    Sha256 sum;
    for (std::uint64_t left = file.size(); left > 0;) {
        const auto part =
            std::span(block).first(static_cast<std::size_t>(std::min<std::uint64_t>(left, block.size())));
        file.stream().read(reinterpret_cast<char*>(part.data()), static_cast<std::streamsize>(part.size()));
        if (!file.stream()) {
            return std::nullopt;
        }
        sum.Add(part);
        left -= part.size();
    }
    return sum.Hex();
}
