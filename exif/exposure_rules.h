// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_EXPOSURE_RULES_H
#define VELMARCON_EXIF_EXPOSURE_RULES_H

#include "tiff/rational.h"

/// The camera stores its three fastest exposure times as 166, 333 and 666 over 1000000 s. Returns the nominal
/// values of these, 1/6000, 1/3000 and 1/1500, and every other time unchanged. Checks only the numerator.
Rational SnapExposureTime(Rational seconds);

/// Converts an exposure bias (in EV) to thirds: the result's numerator is numerator / denominator * 3 + 0.5,
/// truncated toward zero, and its denominator is 3. So +1/3 stays 1/3, but -1/3 becomes 0/3 and -2/3 becomes
/// -1/3. A zero denominator gives 0/3.
SRational ExposureBiasInThirds(SRational ev);

#endif  // VELMARCON_EXIF_EXPOSURE_RULES_H
