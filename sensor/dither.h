// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_DITHER_H
#define VELMARCON_SENSOR_DITHER_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

/// Uniform 16-bit random numbers, made by independent generators that run in parallel, so that the compiler
/// can use vector instructions (xorshift32, each with a period of 2^32 - 1 and two numbers per step).
class Dither {
  public:
    static constexpr std::size_t kLanes = 32;  ///< numbers per step
    using Generators = std::array<std::uint32_t, kLanes / 2>;
    using Numbers = std::array<std::uint16_t, kLanes>;

    /// Draws the seeds from the C library's random sequence.
    Dither();

    /// Fills `values`, whose number must be a multiple of kLanes, with the next numbers, in [0, 1).
    void Fill(std::span<float> values);

    /// The state, for a loop that keeps the generators in registers, calls Step and stores the state back.
    Generators& generators() { return generators_; }

    /// Advances the generators and returns the next numbers.
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
