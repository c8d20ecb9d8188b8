// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_WRAPPING_SUBTRACTION_H
#define VELMARCON_SENSOR_WRAPPING_SUBTRACTION_H

#include <span>

#include "base/pixel.h"
#include "sensor/instruction_set.h"

/// Subtracts from each pixel of `row` the whole part of (its level + `offset`) x `gain`, in 16 bits that
/// wrap: nothing is clamped at 0, and a negative level raises the pixel. `levels` holds one level per pixel.
/// Every version gives the same result.
void SubtractWrapping(std::span<Pixel> row, std::span<const float> levels, float offset, float gain,
                      InstructionSet version = instruction_set::Best());

#endif  // VELMARCON_SENSOR_WRAPPING_SUBTRACTION_H
