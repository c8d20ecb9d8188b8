// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DATABASE_CHECK_H
#define VELMARCON_CALIBRATE_DATABASE_CHECK_H

#include <string>

#include "calibrate/calibration.h"
#include "calibrate/database_text.h"

/// What --check finds.
struct CheckResult {
    bool good = false;
    std::string text;  ///< whole lines; the last one is the verdict
};

/// Compares dark exposures with what the database has for their camera. It is still good while the stripes
/// that it leaves, beyond those of the exposure's own noise, stay below a tenth of the noise of a pixel,
/// which hides them, and no defect shows that is not listed.
CheckResult CheckDatabase(const Calibration& calibration, const database_text::Values& values);

#endif  // VELMARCON_CALIBRATE_DATABASE_CHECK_H
