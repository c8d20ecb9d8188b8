// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_DITHER_H
#define VELMARCON_SENSOR_DITHER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Uniform random numbers in [0, 1), many at a time: independent generators side by side (xorshift32, period
/// 2^32 - 1 each, two numbers of 16 bits a step), which the compiler turns into vector instructions.
class Dither {
  public:
    static constexpr std::size_t kLanes = 32;  ///< numbers a step

    /// Takes its seeds from the C library's random sequence.
    Dither();

    /// Fills `values`, whose number must be a multiple of kLanes.
    void Fill(std::span<float> values);

  private:
    static constexpr std::size_t kGenerators = kLanes / 2;

    std::array<std::uint32_t, kGenerators> generators_ = {};
};

#endif  // VELMARCON_SENSOR_DITHER_H
