// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_OPTIONS_H
#define VELMARCON_APP_OPTIONS_H

#include <span>
#include <string>

#include "app/command_line.h"
#include "app/run_settings.h"
#include "errors/error_handler.h"
#include "exif/lensdb.h"

/// The folder in which the databases are searched: `program` (argv[0]) up to and including its last
/// separator; "./" if that is its first character; empty (the current folder) if there is none.
std::string ExecutableFolder(const std::string& program);

/// The settings that these arguments ask for; -i and -o are left to the caller.
RunSettings SettingsOf(std::span<const Argument> arguments);

/// Turns the command line (argv, including the program's name) into `settings`, and prints the error that
/// ends the run if there is one. Returns 0, or that error's code as the exit status. Unknown options are
/// ignored; of a repeated option the first one counts.
[[nodiscard]] int ParseOptions(std::span<char* const> arguments, const lensdb& lenses,
                               const ErrorHandler& errors, RunSettings& settings);

#endif  // VELMARCON_APP_OPTIONS_H
