// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DATABASE_CHECK_H
#define VELMARCON_CALIBRATE_DATABASE_CHECK_H

#include <string>

#include "calibrate/calibration.h"
#include "calibrate/database_text.h"

/// The result of --check.
struct CheckResult {
    bool good = false;
    std::string text;  ///< whole lines; the verdict is at the end
};

/// Checks a database against dark exposures of its camera. The database is good if no unlisted defect
/// shows, and if the stripes that remain, beyond those of the exposure's own noise, are below a tenth of the
/// noise of a pixel, which hides them.
CheckResult CheckDatabase(const Calibration& calibration, const database_text::Values& values);

#endif  // VELMARCON_CALIBRATE_DATABASE_CHECK_H
