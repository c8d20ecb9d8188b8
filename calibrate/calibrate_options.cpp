// SPDX-License-Identifier: MIT
#include "calibrate/calibrate_options.h"

#include <string_view>

const char* const kCalibrateHelp =
    "usage: velmarcon-calibrate [OPTION]... DARK...\n"
    "\n"
    "Makes the sensor database of a camera (defective columns and dark levels) from exposures with\n"
    "the body cap on. DARK and PATH: a RAW file, its name without extension, or a folder of pairs.\n"
    "\n"
    "--flat PATH        a flat exposure, of an even bright area; may be repeated\n"
    "--database FILE    the sensor database; default: sensdb.ini in the data folder (velmarcon --where)\n"
    "--report FOLDER    write a report with pictures, index.html, into this folder\n"
    "--dry-run          print what was found; do not write the database\n"
    "--doubtful         also write doubtful defects\n"
    "--check            check whether the database fits; write nothing\n"
    "--help, -h         this text\n"
    "--version          the version\n"
    "\n"
    "Exit status: 0 done (--check: the database fits), 1 nothing could be measured or written\n"
    "(--check: it does not fit), 2 wrong usage.\n";

namespace {

bool* FlagFor(std::string_view argument, CalibrateOptions& options) {
    if (argument == "--dry-run") {
        return &options.dry_run;
    }
    if (argument == "--doubtful") {
        return &options.doubtful;
    }
    if (argument == "--check") {
        return &options.check;
    }
    if (argument == "--help" || argument == "-h") {
        return &options.help;
    }
    return argument == "--version" ? &options.version : nullptr;
}

bool TakesValue(std::string_view name) {
    return name == "--flat" || name == "--database" || name == "--report";
}

std::string SetValue(std::string_view name, const std::string& value, CalibrateOptions& options) {
    if (value.empty()) {
        return std::string(name) + " needs a value";
    }
    if (name == "--flat") {
        options.flats.push_back(value);
        return "";
    }
    std::string& single = name == "--database" ? options.database : options.report;
    if (!single.empty()) {
        return std::string(name) + " was given twice";
    }
    single = value;
    return "";
}

std::string CheckTogether(const CalibrateOptions& options) {
    if (options.darks.empty()) {
        return "name at least one dark exposure";
    }
    if (options.check && (!options.flats.empty() || !options.report.empty() || options.doubtful)) {
        return "--check goes with --database only";
    }
    return "";
}

}  // namespace

std::string ReadOptions(std::span<const std::string> arguments, CalibrateOptions& options) {
    bool options_end = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        const std::string_view name = std::string_view(argument).substr(0, argument.find('='));
        if (options_end || !argument.starts_with('-') || argument == "-") {
            options.darks.push_back(argument);
        } else if (argument == "--") {
            options_end = true;
        } else if (bool* const flag = FlagFor(argument, options); flag != nullptr) {
            *flag = true;
        } else if (TakesValue(name)) {
            const bool joined = name.size() < argument.size();
            if (!joined && i + 1 == arguments.size()) {
                return argument + " needs a value";
            }
            const std::string value = joined ? argument.substr(name.size() + 1) : arguments[++i];
            if (std::string problem = SetValue(name, value, options); !problem.empty()) {
                return problem;
            }
        } else {
            return "unknown option " + argument;
        }
    }
    return options.help || options.version ? "" : CheckTogether(options);
}
