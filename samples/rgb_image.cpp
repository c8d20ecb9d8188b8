// SPDX-License-Identifier: MIT
#include "samples/rgb_image.h"

#include <algorithm>
#include <cmath>

namespace samples {

namespace {

constexpr double kMaxCode = 255.0;

// IEC 61966-2-1, section 5.2.
double DecodeSrgb(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double EncodeSrgb(double value) {
    return value <= 0.0031308 ? value * 12.92 : (1.055 * std::pow(value, 1 / 2.4)) - 0.055;
}

}  // namespace

LinearRgb ToLinear(Srgb colour) {
    LinearRgb linear = {};
    std::ranges::transform(colour, linear.begin(),
                           [](std::uint8_t code) { return static_cast<float>(DecodeSrgb(code / kMaxCode)); });
    return linear;
}

Srgb ToSrgb(const LinearRgb& colour) {
    Srgb codes = {};
    std::ranges::transform(colour, codes.begin(), [](float light) {
        const double value = EncodeSrgb(std::clamp(static_cast<double>(light), 0.0, 1.0));
        return static_cast<std::uint8_t>(std::lround(value * kMaxCode));
    });
    return codes;
}

}  // namespace samples
