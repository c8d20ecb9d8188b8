// SPDX-License-Identifier: MIT
#include <windows.h>

#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "app/options.h"
#include "calibrate/calibrate_run.h"
#include "system/standard_streams.h"
#include "system/system_path.h"

/// Tells the start-up code of the C library not to expand `*` and `?` in the arguments.
extern "C" int _dowildcard;
int _dowildcard = 0;

int wmain(int argc, wchar_t** argv) {
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    FillMissingStandardStreams();
    const UINT code_page = ::GetConsoleOutputCP();
    ::SetConsoleOutputCP(CP_UTF8);
    std::vector<std::string> arguments;
    for (const wchar_t* argument : std::span(argv, static_cast<std::size_t>(argc))) {
        arguments.push_back(system_path::FromWide(argument));
    }
    // As with velmarcon.exe, the database is next to the program.
    std::string folder;
    if (!arguments.empty()) {
        folder = ExecutableFolder(arguments.front());
        arguments.erase(arguments.begin());
    }
    const int status = RunCalibrate(arguments, {folder + "sensdb.ini", nullptr});
    (void)std::fflush(stdout);
    ::SetConsoleOutputCP(code_page);
    return status;
}
