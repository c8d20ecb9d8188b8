// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_LINE_PATTERNS_H
#define VELMARCON_SAMPLES_LINE_PATTERNS_H

namespace samples {

/// Parallel dark and light bars of equal width.
struct Bars {
    float pitch = 8;     ///< pixels from one dark bar to the next
    float across_x = 1;  ///< unit vector across the bars: (1, 0) gives vertical bars
    float across_y = 0;
};

/// The part of the pixel at (`x`, `y`) that dark bars cover, 0 to 1. Bars too fine for the pixels fade to an
/// even grey.
float BarCoverage(const Bars& bars, float x, float y);

/// A star of 36 dark spokes around (0, 0): the part of the pixel at (`x`, `y`) that spokes cover, 0 to 1. The
/// star fades out between 97 and 100 % of `radius` (in pixels) and towards its centre, where the spokes meet.
float StarCoverage(float radius, float x, float y);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_LINE_PATTERNS_H
