// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_SHA256_H
#define VELMARCON_BATCH_PROOF_SHA256_H

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

struct gcry_md_handle;

/// A SHA-256 check sum (FIPS 180-4) in the making.
class Sha256 {
  public:
    /// Of no bytes so far. Throws std::bad_alloc when there is no memory for it.
    Sha256();

    /// Takes the next bytes.
    void Add(std::span<const std::uint8_t> bytes);

    /// The check sum of all bytes that were added, in 64 digits "0" to "9" and "a" to "f". More may follow.
    std::string Hex() const;

  private:
    struct Closer {
        void operator()(gcry_md_handle* state) const;
    };
    std::unique_ptr<gcry_md_handle, Closer> state_;
};

/// The check sum of the plain file at `path`; nothing when it cannot be read whole.
std::optional<std::string> Sha256OfFile(const std::string& path);

#endif  // VELMARCON_BATCH_PROOF_SHA256_H
