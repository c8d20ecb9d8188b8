// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_SHA256_H
#define VELMARCON_BATCH_PROOF_SHA256_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "batch/proof/sha256_blocks.h"

/// A SHA-256 check sum (FIPS 180-4) in the making.
class Sha256 {
  public:
    /// Of no bytes so far.
    Sha256() : compress_(sha256_blocks::Fastest()) {}

    /// Takes the next bytes.
    void Add(std::span<const std::uint8_t> bytes);

    /// The check sum of all bytes that were added, in 64 digits "0" to "9" and "a" to "f". More may follow.
    std::string Hex() const;

  private:
    sha256_blocks::Compress compress_;
    sha256_blocks::State state_ = sha256_blocks::kInitialState;
    std::array<std::uint8_t, sha256_blocks::kBlockSize> rest_ = {};  ///< bytes that fill no block yet
    std::uint64_t length_ = 0;                                       ///< of all bytes
};

/// The check sum of the plain file at `path`; nothing when it cannot be read whole.
std::optional<std::string> Sha256OfFile(const std::string& path);

#endif  // VELMARCON_BATCH_PROOF_SHA256_H
