// SPDX-License-Identifier: MIT
#include <csignal>
#include <cstddef>
#include <span>
#include <string>

#include "app/conversion_run.h"
#include "app/error_handler.h"
#include "app/options.h"
#include "app/run_settings.h"
#include "exif/lensdb.h"
#include "input/pixel_memory.h"
#include "sensor/sensdb.h"

int main(int argc, char* argv[]) {
#if defined(SIGXFSZ)
    // A file that may not grow is a failed write, to be reported, and no reason to die.
    (void)std::signal(SIGXFSZ, SIG_IGN);
#endif
    pixel_memory::KeepFreedBlocks();

    const std::span<char* const> arguments(argv, static_cast<std::size_t>(argc));
    const std::string folder = ExecutableFolder(arguments.empty() ? "" : arguments.front());
    lensdb lenses(folder);
    // A missing database matters only to -l, and an empty one tells it then.
    (void)lenses.LoadLensData();
    sensdb sensors(folder);
    const ErrorHandler errors;

    RunSettings settings;
    if (const int error = ParseOptions(arguments, lenses, errors, settings); error != 0) {
        return error;
    }
    return ConversionRun(settings, lenses, sensors, errors).Run();
}
