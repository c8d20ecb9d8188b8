// SPDX-License-Identifier: MIT
#define SI_IMPLEMENTATION
#include "system/ini_file.h"

#include <cstdint>
#include <new>
#include <optional>
#include <utility>

#include "system/input_file.h"

template class CSimpleIniTempl<char, SI_NoCase<char>, SI_ConvertA<char>>;

namespace ini_file {

std::optional<std::string> Read(const std::string& path) {
    InputFile file;
    if (!file.Open(path) || file.size() > kLongestFile) {
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(file.size()), '\0');
    const bool whole = file.ReadStart({reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size()});
    return whole ? std::optional(std::move(bytes)) : std::nullopt;
}

int Parse(const std::string& text, File& ini, bool& complete) {
    complete = text.find('\0') == std::string::npos;
    const SI_Error result = ini.LoadData(text);
    if (result == SI_NOMEM) {
        // The library reports some failed allocations this way and throws for others. A database that did not
        // fit into memory must not look like one that does not exist.
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
