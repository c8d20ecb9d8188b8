// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_SPLIT_LEVELS_H
#define VELMARCON_SENSOR_SPLIT_LEVELS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/pixel.h"
#include "sensor/dither.h"
#include "sensor/instruction_set.h"

/// The dark levels of a row, each split into a whole number and a fraction of 16 bits, so that a dithered
/// subtraction needs only 16-bit numbers.
class SplitLevels {
  public:
    /// Splits `levels`, one per column. Returns std::nullopt if there are none, or if one is negative, NaN,
    /// or 65536 or more.
    static std::optional<SplitLevels> Of(std::span<const float> levels);

    /// Subtracts the levels from each row of `pixels`, whose last row may be incomplete. A level with the
    /// fraction f is rounded up with probability f, in steps of 1/65536; 65536 wraps to 0. A pixel below the
    /// rounded level becomes 0. Every version gives the same result for the same state of `dither`.
    void SubtractFrom(std::span<Pixel> pixels, Dither& dither,
                      InstructionSet version = instruction_set::Best()) const;

  private:
    explicit SplitLevels(std::span<const float> levels);

    std::size_t columns_;
    // Padded to a multiple of Dither::kLanes.
    std::vector<std::uint16_t> whole_;
    std::vector<std::uint16_t> fraction_;  ///< in 1/65536
};

#endif  // VELMARCON_SENSOR_SPLIT_LEVELS_H
