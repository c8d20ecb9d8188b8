// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_REPORT_H
#define VELMARCON_CALIBRATE_REPORT_H

#include <string>

#include "calibrate/measuring.h"

/// Writes the report, a page with pictures, into `folder`, which is created if needed. `command` is the
/// command line. A page index.html that no report has written stays, and there is no report. Reads exposures
/// again for the pictures. Returns why there is no page, empty on success; if pictures cannot be made, the
/// page says so instead.
[[nodiscard]] std::string WriteReport(const std::string& folder, const std::string& command,
                                      Measuring& measuring);

#endif  // VELMARCON_CALIBRATE_REPORT_H
