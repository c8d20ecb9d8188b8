// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_FINGERPRINT_H
#define VELMARCON_BATCH_FINGERPRINT_H

#include <cstdint>
#include <memory>
#include <span>
#include <string>

/// 16 hexadecimal digits that tell bytes from any that they become by damage: as quick as memory, and no
/// proof against forgery. They are those of XXH3 with 64 bits, as `xxhsum -H3` prints them.
class Fingerprint {
  public:
    /// Of no bytes so far.
    Fingerprint();
    ~Fingerprint();
    Fingerprint(const Fingerprint&) = delete;
    Fingerprint& operator=(const Fingerprint&) = delete;
    Fingerprint(Fingerprint&&) = delete;
    Fingerprint& operator=(Fingerprint&&) = delete;

    /// Takes the next bytes.
    void Add(std::span<const std::uint8_t> bytes);

    /// The digits of all bytes so far.
    std::string Hex() const;

  private:
    struct State;  ///< the library's
    std::unique_ptr<State> state_;
};

#endif  // VELMARCON_BATCH_FINGERPRINT_H
