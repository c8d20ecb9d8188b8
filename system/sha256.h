// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_SHA256_H
#define VELMARCON_SYSTEM_SHA256_H

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

/// A SHA-256 check sum (FIPS 180-4) in the making, by libgcrypt or by Windows.
class Sha256 {
  public:
    /// Of no bytes so far. Throws std::bad_alloc when the system has nothing left for it.
    Sha256();
    ~Sha256();
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;
    Sha256(Sha256&&) = delete;
    Sha256& operator=(Sha256&&) = delete;

    /// Takes the next bytes.
    void Add(std::span<const std::uint8_t> bytes);

    /// The check sum of all bytes that were added, in 64 digits "0" to "9" and "a" to "f". Called once, at
    /// the end.
    std::string Hex();

  private:
    struct State;  ///< the system's
    std::unique_ptr<State> state_;
};

/// The check sum of the plain file at `path`; nothing when it cannot be read whole.
std::optional<std::string> Sha256OfFile(const std::string& path);

#endif  // VELMARCON_SYSTEM_SHA256_H
