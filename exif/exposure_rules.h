// SPDX-License-Identifier: MIT
#ifndef VELMARCON_EXIF_EXPOSURE_RULES_H
#define VELMARCON_EXIF_EXPOSURE_RULES_H

#include "tiff/rational.h"

/// The camera stores its three fastest exposure times as 166, 333 and 666 over 1000000 s. Returns their
/// nominal values 1/6000, 1/3000 and 1/1500; every other time unchanged. Only the numerator is looked at.
Rational SnapExposureTime(Rational seconds);

/// An exposure bias (in EV) in thirds: the numerator is numerator / denominator * 3 + 0.5, truncated toward
/// zero, the denominator 3. So +1/3 stays 1/3, but -1/3 becomes 0/3 and -2/3 becomes -1/3. A zero denominator
/// gives 0/3.
SRational ExposureBiasInThirds(SRational ev);

#endif  // VELMARCON_EXIF_EXPOSURE_RULES_H
