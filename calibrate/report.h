// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_REPORT_H
#define VELMARCON_CALIBRATE_REPORT_H

#include <string>

#include "calibrate/measuring.h"

/// Writes the page of what was measured, with its pictures, into `folder`, which is made unless it is there.
/// `command` is the command line. Reads exposures once more for the pictures. Returns why there is no page,
/// or an empty text; a picture that cannot be made is none, and the page says so.
[[nodiscard]] std::string WriteReport(const std::string& folder, const std::string& command,
                                      Measuring& measuring);

#endif  // VELMARCON_CALIBRATE_REPORT_H
