// SPDX-License-Identifier: MIT
#include "system/run_tool.h"

#include <process.h>

#include <filesystem>
#include <system_error>

#include "system/system_path.h"

bool RunTool(const std::string& folder, const std::string& name, const std::vector<std::string>& arguments) {
    std::error_code error;
    const std::filesystem::path before = std::filesystem::current_path(error);
    std::filesystem::current_path(system_path::ToSystem(folder), error);
    if (error) {
        return false;
    }
    std::vector<std::wstring> texts = {system_path::ToSystem(name).wstring()};
    for (const std::string& argument : arguments) {
        texts.push_back(system_path::ToSystem(argument).wstring());
    }
    std::vector<const wchar_t*> pointers;
    for (const std::wstring& text : texts) {
        pointers.push_back(text.c_str());
    }
    pointers.push_back(nullptr);
    const bool done = ::_wspawnvp(_P_WAIT, pointers[0], pointers.data()) == 0;
    std::filesystem::current_path(before, error);
    return done;
}
