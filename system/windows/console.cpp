// SPDX-License-Identifier: MIT
#include "system/windows/console.h"

#include <windows.h>

#include <cstddef>
#include <cstdio>
#include <span>

#include "system/system_path.h"

/// Tells the start-up code of the C library not to expand `*` and `?` in the arguments.
extern "C" int _dowildcard;
int _dowildcard = 0;

Utf8Console::Utf8Console() : code_page_(::GetConsoleOutputCP()) {
    ::SetConsoleOutputCP(CP_UTF8);
}

Utf8Console::~Utf8Console() {
    (void)std::fflush(stdout);
    ::SetConsoleOutputCP(code_page_);
}

void ShowNoErrorWindows() {
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
}

std::vector<std::string> Arguments(int count, const wchar_t* const* arguments) {
    std::vector<std::string> texts;
    for (const wchar_t* argument : std::span(arguments, static_cast<std::size_t>(count))) {
        texts.push_back(system_path::FromWide(argument));
    }
    return texts;
}
