// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_SHA256_BLOCKS_H
#define VELMARCON_BATCH_PROOF_SHA256_BLOCKS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// The compression of SHA-256 (FIPS 180-4, section 6.2.2). Ours, because velmarcon-batch runs where only the
/// C library is, and no library for check sums is to be had for every system that it is built for.
namespace sha256_blocks {

constexpr std::size_t kBlockSize = 64;  ///< bytes

using State = std::array<std::uint32_t, 8>;
constexpr State kInitialState = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                                 0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};

/// Takes `blocks`, whose length must be a multiple of kBlockSize, into `state`.
using Compress = void (*)(State& state, std::span<const std::uint8_t> blocks);

/// On any processor.
void CompressPlain(State& state, std::span<const std::uint8_t> blocks);

/// With the processor's own instructions for SHA-256; CompressPlain where it has none.
Compress Fastest();

}  // namespace sha256_blocks

#endif  // VELMARCON_BATCH_PROOF_SHA256_BLOCKS_H
