// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_OPTIONS_H
#define VELMARCON_APP_OPTIONS_H

#include <span>
#include <string>

#include "app/run_settings.h"
#include "errors/error_handler.h"
#include "exif/lensdb.h"

/// The folder in which the databases are looked for: `program` (argv[0]) up to and including its last
/// separator; "./" when that stands first, empty (the current folder) when there is none.
std::string ExecutableFolder(const std::string& program);

/// Turns the command line (argv, the program's name included) into `settings`, printing the error that ends
/// the run if there is one. Returns 0, or that error's code: the exit status. Unknown options are ignored; of
/// a repeated one the first counts.
int ParseOptions(std::span<char* const> arguments, const lensdb& lenses, const ErrorHandler& errors,
                 RunSettings& settings);

#endif  // VELMARCON_APP_OPTIONS_H
