// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_CALIBRATE_OPTIONS_H
#define VELMARCON_CALIBRATE_CALIBRATE_OPTIONS_H

#include <span>
#include <string>
#include <vector>

/// The settings given on the command line.
struct CalibrateOptions {
    std::vector<std::string> darks;
    std::vector<std::string> flats;
    std::string database;  ///< empty: the default one
    std::string report;    ///< folder; empty: none
    bool dry_run = false;
    bool doubtful = false;  ///< write doubtful defects as well
    bool check = false;
    bool help = false;
    bool version = false;
};

/// Reads the arguments, without the program's name. Returns an error message, empty on success.
[[nodiscard]] std::string ReadOptions(std::span<const std::string> arguments, CalibrateOptions& options);

/// What --help prints.
extern const char* const kCalibrateHelp;

#endif  // VELMARCON_CALIBRATE_CALIBRATE_OPTIONS_H
