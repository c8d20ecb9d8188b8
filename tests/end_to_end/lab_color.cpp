// SPDX-License-Identifier: MIT
#include "tests/end_to_end/lab_color.h"

#include <array>
#include <cmath>

namespace end_to_end {

namespace {

/// CIE 15, section 8.2.1.
double LabCurve(double value) {
    constexpr double edge = 6.0 / 29;
    return value > edge * edge * edge ? std::cbrt(value) : (value / (3 * edge * edge)) + (4.0 / 29);
}

}  // namespace

LabColor ToLab(const samples::LinearRgb& colour) {
    // IEC 61966-2-1, each row divided by the white point, which is the row's sum.
    constexpr std::array<std::array<double, 3>, 3> to_xyz = {
        {{0.4124, 0.3576, 0.1805}, {0.2126, 0.7152, 0.0722}, {0.0193, 0.1192, 0.9505}}};
    std::array<double, 3> curved = {};
    for (std::size_t i = 0; i < curved.size(); ++i) {
        const auto& [red, green, blue] = to_xyz.at(i);
        const double light = red * static_cast<double>(colour[0]) + green * static_cast<double>(colour[1]) +
                             blue * static_cast<double>(colour[2]);
        curved.at(i) = LabCurve(light / (red + green + blue));
    }
    const auto& [x, y, z] = curved;
    return {.lightness = 116 * y - 16, .a = 500 * (x - y), .b = 200 * (y - z)};
}

double DeltaE(const LabColor& first, const LabColor& second) {
    return std::hypot(first.lightness - second.lightness, first.a - second.a, first.b - second.b);
}

double Chroma(const LabColor& colour) {
    return std::hypot(colour.a, colour.b);
}

}  // namespace end_to_end
