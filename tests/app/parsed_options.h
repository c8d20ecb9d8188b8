// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_APP_PARSED_OPTIONS_H
#define VELMARCON_TESTS_APP_PARSED_OPTIONS_H

#include <string>
#include <vector>

#include "app/run_settings.h"

/// What became of a command line.
struct Parsed {
    int status = -1;
    std::string output;
    RunSettings settings;
};

/// Lets the program read `arguments`, which go without its name, with or without a lens in its database.
Parsed Parse(std::vector<std::string> arguments, bool with_lenses = true);

/// The settings, without the folders, that differ from the default ones.
std::string Changed(const RunSettings& settings);

#endif  // VELMARCON_TESTS_APP_PARSED_OPTIONS_H
