// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_RGB_IMAGE_H
#define VELMARCON_SAMPLES_RGB_IMAGE_H

#include <array>
#include <cstdint>
#include <vector>

namespace samples {

using Srgb = std::array<std::uint8_t, 3>;  ///< red, green, blue in the sRGB encoding (IEC 61966-2-1)
using LinearRgb = std::array<float, 3>;    ///< the same primaries, proportional to light, 0 to 1

LinearRgb ToLinear(Srgb colour);
/// Rounds to the nearest code; values outside 0 to 1 are clipped.
Srgb ToSrgb(const LinearRgb& colour);

/// 8-bit red, green, blue, row by row.
struct RgbImage {
    int width = 0;   ///< pixels
    int height = 0;  ///< pixels
    std::vector<std::uint8_t> samples = {};
};

}  // namespace samples

#endif  // VELMARCON_SAMPLES_RGB_IMAGE_H
