// SPDX-License-Identifier: MIT
#define SI_IMPLEMENTATION
#include "system/ini_file.h"

#include <fstream>
#include <ios>
#include <new>
#include <optional>
#include <utility>

#include "system/system_path.h"

template class CSimpleIniTempl<char, SI_NoCase<char>, SI_ConvertA<char>>;

namespace ini_file {

std::optional<std::string> Read(const std::string& path) {
    std::ifstream file;
    const std::streamoff size = system_path::OpenPlainFile(path, file) ? std::streamoff(file.tellg()) : -1;
    if (size < 0 || static_cast<std::uint64_t>(size) > kLongestFile) {
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.seekg(0);
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    return file.gcount() == size ? std::optional(std::move(bytes)) : std::nullopt;
}

int Parse(const std::string& text, File& ini, bool& complete) {
    complete = text.find('\0') == std::string::npos;
    const SI_Error result = ini.LoadData(text);
    if (result == SI_NOMEM) {
        // The library reports some failed allocations so and throws at others. A database that there was no
        // memory for must not look like one that is not there.
        throw std::bad_alloc();
    }
    return result;
}

int Load(const std::string& path, File& ini) {
    const auto text = Read(path);
    bool complete = false;
    return text ? Parse(*text, ini, complete) : SI_FILE;
}

bool SameName(const char* a, const char* b) {
    const SI_NoCase<char> less;
    return !less(a, b) && !less(b, a);
}

}  // namespace ini_file
