// SPDX-License-Identifier: MIT
#include <windows.h>

#include <cstddef>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

#include "app/run_program.h"
#include "system/standard_streams.h"
#include "system/system_path.h"

/// Tells the start-up code of the C library not to expand `*` and `?` in the arguments.
extern "C" int _dowildcard;
int _dowildcard = 0;

namespace {

/// Switches the console to UTF-8, in which the program prints, and back at the end. The console would not do
/// that by itself.
class Utf8Console {
  public:
    Utf8Console() : code_page_(::GetConsoleOutputCP()) { ::SetConsoleOutputCP(CP_UTF8); }
    ~Utf8Console() {
        (void)std::fflush(stdout);
        ::SetConsoleOutputCP(code_page_);
    }
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;
    Utf8Console(Utf8Console&&) = delete;
    Utf8Console& operator=(Utf8Console&&) = delete;

  private:
    UINT code_page_;
};

}  // namespace

int wmain(int argc, wchar_t** argv) {
    // A card reader without a card is an ordinary error; the system must not show a dialog.
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    FillMissingStandardStreams();
    const Utf8Console console;
    std::vector<std::string> texts;
    std::vector<char*> arguments;
    for (const wchar_t* argument : std::span(argv, static_cast<std::size_t>(argc))) {
        texts.push_back(system_path::FromWide(argument));
    }
    arguments.reserve(texts.size());
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    return RunProgram(arguments);
}
