// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_APP_PARSED_OPTIONS_H
#define VELMARCON_TESTS_APP_PARSED_OPTIONS_H

#include <string>
#include <vector>

#include "app/run_settings.h"

/// The result of parsing a command line.
struct Parsed {
    int status = -1;
    std::string output;
    RunSettings settings;
};

/// Parses `arguments`, which do not include the program's name, with or without a lens in the lens database.
Parsed Parse(std::vector<std::string> arguments, bool with_lenses = true);

/// The settings that differ from their defaults, without the folders.
std::string Changed(const RunSettings& settings);

#endif  // VELMARCON_TESTS_APP_PARSED_OPTIONS_H
