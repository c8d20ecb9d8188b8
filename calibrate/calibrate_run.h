// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_CALIBRATE_RUN_H
#define VELMARCON_CALIBRATE_CALIBRATE_RUN_H

#include <span>
#include <string>

/// Exit statuses.
constexpr int kCalibrated = 0;
constexpr int kNotCalibrated = 1;  ///< nothing could be measured or written; with --check: make it anew
constexpr int kWrongUsage = 2;

/// The program: `arguments` without its own name; `default_database` is used without --database, empty if
/// there is none. Returns the exit status.
int RunCalibrate(std::span<const std::string> arguments, const std::string& default_database);

#endif  // VELMARCON_CALIBRATE_CALIBRATE_RUN_H
