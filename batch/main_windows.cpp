// SPDX-License-Identifier: MIT
#include <windows.h>

#include <array>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "app/options.h"
#include "batch/batch_run.h"
#include "system/pixel_memory.h"
#include "system/standard_streams.h"
#include "system/system_path.h"

/// Tells the start-up code of the C library to leave `*` and `?` in the arguments alone.
extern "C" int _dowildcard;
int _dowildcard = 0;

namespace {

std::string OwnPath() {
    constexpr DWORD longest = 32768;
    std::vector<wchar_t> path(longest);
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), longest);
    return system_path::FromWide({path.data(), length});
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    FillMissingStandardStreams();
    pixel_memory::RetainFreedMemory();
    const UINT code_page = ::GetConsoleOutputCP();
    ::SetConsoleOutputCP(CP_UTF8);
    std::vector<std::string> arguments;
    for (const wchar_t* argument : std::span(argv, static_cast<std::size_t>(argc))) {
        arguments.push_back(system_path::FromWide(argument));
    }
    if (!arguments.empty()) {
        arguments.erase(arguments.begin());
    }
    // As for velmarcon.exe: the databases stand next to the program.
    const std::string program = OwnPath();
    const int status = RunBatch(arguments, {program, [&] { return ExecutableFolder(program); }});
    (void)std::fflush(stdout);
    ::SetConsoleOutputCP(code_page);
    return status;
}
