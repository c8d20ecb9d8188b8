// SPDX-License-Identifier: MIT
#include "samples/line_patterns.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace samples {

namespace {

/// 1 from a pitch of 4 pixels up, 0 at 2 pixels: finer bars would only alias.
float Contrast(float pitch) {
    return std::clamp((pitch - 2) / 2, 0.0F, 1.0F);
}

float Faded(float coverage, float contrast) {
    return 0.5F + ((coverage - 0.5F) * contrast);
}

}  // namespace

float BarCoverage(const Bars& bars, float x, float y) {
    const float along = ((x * bars.across_x) + (y * bars.across_y)) / bars.pitch;
    const float phase = along - std::floor(along);
    // Distance in pixels from the nearest edge.
    const float inside = (0.25F - std::abs(phase - 0.5F)) * bars.pitch;
    return Faded(std::clamp(inside + 0.5F, 0.0F, 1.0F), Contrast(bars.pitch));
}

float StarCoverage(float radius, float x, float y) {
    constexpr float kSpokes = 36;
    constexpr float kRimShare = 0.03F;
    const float distance = std::hypot(x, y);
    if (distance >= radius) {
        return 0;
    }
    const float pitch = 2 * std::numbers::pi_v<float> * distance / kSpokes;
    const float wave = std::cos(kSpokes * std::atan2(y, x));
    const float coverage = std::clamp(0.5F + (wave * pitch / std::numbers::pi_v<float>), 0.0F, 1.0F);
    const float rim = std::clamp((radius - distance) / (kRimShare * radius), 0.0F, 1.0F);
    return Faded(coverage, Contrast(pitch)) * rim;
}

}  // namespace samples
