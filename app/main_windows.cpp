// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include "app/run_program.h"
#include "system/standard_streams.h"
#include "system/windows/console.h"

int wmain(int argc, wchar_t** argv) {
    ShowNoErrorWindows();
    FillMissingStandardStreams();
    const Utf8Console console;
    std::vector<std::string> texts = Arguments(argc, argv);
    std::vector<char*> arguments;
    arguments.reserve(texts.size());
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    return RunProgram(arguments);
}
