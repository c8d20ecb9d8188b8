// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_LAB_COLOR_H
#define VELMARCON_TESTS_END_TO_END_LAB_COLOR_H

#include "samples/rgb_image.h"

namespace end_to_end {

/// CIE 1976 L*a*b* relative to the white of sRGB, D65.
struct LabColor {
    double lightness = 0;  ///< 0 to 100
    double a = 0;          ///< green to magenta
    double b = 0;          ///< blue to yellow
};

LabColor ToLab(const samples::LinearRgb& colour);

/// The colour difference Delta E (CIE 1976); from about 2 on, two adjacent plain areas look different.
double DeltaE(const LabColor& first, const LabColor& second);

/// The distance from grey.
double Chroma(const LabColor& colour);

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_LAB_COLOR_H
