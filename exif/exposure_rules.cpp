// SPDX-License-Identifier: MIT
#include "exif/exposure_rules.h"

#include <cstdint>

#include "base/truncate.h"

Rational SnapExposureTime(Rational seconds) {
    switch (seconds.numerator) {
        case 166:
            return {1, 6000};
        case 333:
            return {1, 3000};
        case 666:
            return {1, 1500};
        default:
            return seconds;
    }
}

SRational ExposureBiasInThirds(SRational ev) {
    constexpr std::int32_t thirds = 3;
    if (ev.denominator == 0) {
        return {0, thirds};
    }
    // Truncates instead of rounding, also below zero: files made so far contain these values.
    const double value = static_cast<double>(ev.numerator) / ev.denominator * thirds + 0.5;
    return {Truncate<std::int32_t>(value), thirds};
}
