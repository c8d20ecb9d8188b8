// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_RUN_SETTINGS_H
#define VELMARCON_APP_RUN_SETTINGS_H

#include <cstdint>
#include <string>

#include "app/input_discovery.h"

/// The settings given on the command line.
struct RunSettings {
    InputFiles input;
    std::string output_folder;  ///< ends in a separator; empty: next to a bare input file name
    bool verbose = false;
    bool refresh = false;
    bool preview = false;
    bool black_level_given = false;
    std::uint16_t black_level = 92;  ///< at the base ISO
    bool lens_fix = false;
    std::string lens_code;  ///< six "0"/"1" characters, unchecked; empty: not given
    bool sensor_fix = false;
    bool dark_field_fix = false;
    bool dark_field_creation = false;
    bool pixel_line_test = false;
    bool row_offset_estimation = false;
    bool raw_model_variant = false;
};

#endif  // VELMARCON_APP_RUN_SETTINGS_H
