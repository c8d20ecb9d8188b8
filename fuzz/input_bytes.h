// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_INPUT_BYTES_H
#define VELMARCON_FUZZ_INPUT_BYTES_H

#include <cstdint>
#include <span>

/// One input: the first few bytes choose options, the rest is what the code under test reads.
class InputBytes {
  public:
    explicit InputBytes(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    /// Takes the first byte off the input; 0 if there is none.
    std::uint8_t NextByte() {
        if (rest_.empty()) {
            return 0;
        }
        const std::uint8_t byte = rest_.front();
        rest_ = rest_.subspan(1);
        return byte;
    }

    std::span<const std::uint8_t> Rest() const { return rest_; }

  private:
    std::span<const std::uint8_t> rest_;
};

/// Whether bit `position`, counted from the lowest, is set.
constexpr bool Bit(std::uint8_t byte, unsigned int position) {
    return ((static_cast<unsigned int>(byte) >> position) & 1U) != 0;
}

#endif  // VELMARCON_FUZZ_INPUT_BYTES_H
