// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_LINEARIZATION_H
#define VELMARCON_DNG_LINEARIZATION_H

#include <array>
#include <cstdint>
#include <span>

#include "base/pixel.h"
#include "sensor/instruction_set.h"

/// The pixel values of the 256 possible 8-bit samples (DNG 1.4, LinearizationTable).
using LinearizationTable = std::array<std::uint16_t, 256>;

/// Looks up each of the 8-bit `samples` in `table`. `pixels` must have room for as many values and share no
/// memory with the samples. `version` must be available.
void Linearize(std::span<const std::uint8_t> samples, const LinearizationTable& table,
               std::span<Pixel> pixels, InstructionSet version = instruction_set::Best());

#endif  // VELMARCON_DNG_LINEARIZATION_H
