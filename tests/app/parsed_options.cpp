// SPDX-License-Identifier: MIT
#include "tests/app/parsed_options.h"

#include <algorithm>

#include "app/options.h"
#include "tests/support/capture_stdout.h"

Parsed Parse(std::vector<std::string> arguments, bool with_lenses) {
    lensdb lenses;
    if (with_lenses) {
        lenses.Lenses["000001"] = {};
    }
    arguments.insert(arguments.begin(), "velmarcon");
    std::vector<char*> argv;
    std::ranges::transform(arguments, std::back_inserter(argv),
                           [](std::string& argument) { return argument.data(); });
    Parsed parsed;
    const ErrorHandler errors;
    parsed.output =
        support::CaptureStdout([&] { parsed.status = ParseOptions(argv, lenses, errors, parsed.settings); });
    return parsed;
}

std::string Changed(const RunSettings& settings) {
    std::string text;
    const auto add = [&text](bool changed, const std::string& name) { text += changed ? name + " " : ""; };
    add(settings.verbose, "verbose");
    add(settings.refresh, "refresh");
    add(settings.preview, "preview");
    add(settings.black_level_given, "black");
    add(settings.black_level != 92, std::to_string(settings.black_level));
    add(settings.lens_fix, "lens");
    add(!settings.lens_code.empty(), settings.lens_code);
    add(settings.sensor_fix, "sensor");
    add(settings.dark_field_fix, "dark");
    add(settings.dark_field_creation, "create");
    add(settings.pixel_line_test, "test");
    add(settings.row_offset_estimation, "rows");
    add(settings.raw_model_variant, "variant");
    return text;
}
