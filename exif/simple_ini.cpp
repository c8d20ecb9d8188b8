// SPDX-License-Identifier: MIT
#define SI_IMPLEMENTATION
#include "exif/simple_ini.h"

#include <filesystem>
#include <new>
#include <system_error>

template class CSimpleIniTempl<char, SI_NoCase<char>, SI_ConvertA<char>>;

namespace simple_ini {

int Load(const std::string& path, File& ini) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return SI_FILE;
    }
    const SI_Error result = ini.LoadFile(path.c_str());
    if (result == SI_NOMEM) {
        // The library reports some failed allocations so and throws at others. A database that there was no
        // memory for must not look like one that is not there.
        throw std::bad_alloc();
    }
    return result;
}

bool SameName(const char* a, const char* b) {
    const SI_NoCase<char> less;
    return !less(a, b) && !less(b, a);
}

}  // namespace simple_ini
