// SPDX-License-Identifier: MIT
#include "app/run_program.h"

#include <cstdio>
#include <new>
#include <string>

#include "app/conversion_run.h"
#include "app/options.h"
#include "app/run_settings.h"
#include "errors/error_handler.h"
#include "exif/lensdb.h"
#include "sensor/sensdb.h"

namespace {

int Run(std::span<char* const> arguments, Confinement confine) {
    const std::string folder = ExecutableFolder(arguments.empty() ? "" : arguments.front());
    lensdb lenses(folder);
    // A missing database matters only to -l, which reports an empty one.
    (void)lenses.LoadLensData();
    sensdb sensors(folder);
    const ErrorHandler errors;

    RunSettings settings;
    if (const int error = ParseOptions(arguments, lenses, errors, settings); error != 0) {
        return error;
    }
    if (confine != nullptr) {
        // The run continues without a sandbox if the system has none.
        (void)confine(ReachOf(settings, sensors.DatabaseFile));
    }
    return ConversionRun(settings, lenses, sensors, errors).Run();
}

}  // namespace

int RunProgram(std::span<char* const> arguments, Confinement confine) {
    try {
        return Run(arguments, confine);
    } catch (const std::bad_alloc&) {
        std::printf("velmarcon: out of memory\n");
        return kOutOfMemory;
    }
}
