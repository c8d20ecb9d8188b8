// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include "app/options.h"
#include "calibrate/calibrate_run.h"
#include "system/path_names.h"
#include "system/standard_streams.h"
#include "system/windows/console.h"

int wmain(int argc, wchar_t** argv) {
    ShowNoErrorWindows();
    FillMissingStandardStreams();
    const Utf8Console console;
    std::vector<std::string> arguments = Arguments(argc, argv);
    // As with velmarcon.exe, the database is next to the program.
    std::string folder;
    if (!arguments.empty()) {
        folder = ExecutableFolder(arguments.front());
        arguments.erase(arguments.begin());
    }
    return RunCalibrate(arguments, {folder + path_names::kSensorDatabase, nullptr});
}
