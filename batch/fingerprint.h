// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_FINGERPRINT_H
#define VELMARCON_BATCH_FINGERPRINT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// 16 hexadecimal digits that tell bytes from any that they become by damage: as quick as memory, and no
/// proof against forgery.
class Fingerprint {
  public:
    /// Takes the next bytes.
    void Add(std::span<const std::uint8_t> bytes);

    /// The digits of all bytes so far.
    std::string Hex() const;

  private:
    static constexpr std::size_t kLanes = 4;
    static constexpr std::size_t kBlock = kLanes * sizeof(std::uint64_t);

    void AddBlocks(std::span<const std::uint8_t> blocks);

    std::array<std::uint64_t, kLanes> lanes_ = {1, 2, 3, 4};
    std::array<std::uint8_t, kBlock> rest_ = {};  ///< of a block that is not full
    std::size_t rest_length_ = 0;
    std::uint64_t length_ = 0;
};

#endif  // VELMARCON_BATCH_FINGERPRINT_H
