// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_DITHER_H
#define VELMARCON_SENSOR_DITHER_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

/// Uniform random numbers of 16 bits, many at a time: independent generators side by side (xorshift32, period
/// 2^32 - 1 each, two numbers a step), which the compiler turns into vector instructions.
class Dither {
  public:
    static constexpr std::size_t kLanes = 32;  ///< numbers a step
    using Generators = std::array<std::uint32_t, kLanes / 2>;
    using Numbers = std::array<std::uint16_t, kLanes>;

    /// Takes its seeds from the C library's random sequence.
    Dither();

    /// Fills `values`, whose number must be a multiple of kLanes, with the next numbers, in [0, 1).
    void Fill(std::span<float> values);

    /// For a loop that keeps the generators in registers: gives the state to Step from, and takes it back.
    Generators& generators() { return generators_; }

    /// Moves the generators on and gives the next numbers.
    [[gnu::always_inline]] static Numbers Step(Generators& generators) {
        for (std::uint32_t& generator : generators) {
            std::uint32_t x = generator;
            x ^= x << 13U;
            x ^= x >> 17U;
            x ^= x << 5U;
            generator = x;
        }
        return std::bit_cast<Numbers>(generators);
    }

  private:
    Generators generators_ = {};
};

#endif  // VELMARCON_SENSOR_DITHER_H
