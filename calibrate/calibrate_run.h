// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_CALIBRATE_RUN_H
#define VELMARCON_CALIBRATE_CALIBRATE_RUN_H

#include <functional>
#include <span>
#include <string>
#include <system_error>

/// Exit statuses.
constexpr int kCalibrated = 0;
/// Nothing could be measured or written; with --check: the database must be made anew.
constexpr int kNotCalibrated = 1;
constexpr int kWrongUsage = 2;

/// The database of a run whose options name none.
struct DefaultDatabase {
    std::string path;  ///< empty: there is none
    /// Called before the database is written, unless it is empty.
    std::function<std::error_code()> make_folder;
};

/// Runs the program; `arguments` is without the program's name. Returns the exit status.
[[nodiscard]] int RunCalibrate(std::span<const std::string> arguments,
                               const DefaultDatabase& default_database);

#endif  // VELMARCON_CALIBRATE_CALIBRATE_RUN_H
