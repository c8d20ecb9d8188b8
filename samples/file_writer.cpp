// SPDX-License-Identifier: MIT
#include "samples/file_writer.h"

#include <filesystem>
#include <fstream>
#include <ios>
#include <system_error>

namespace samples {

std::string WriteFile(const std::string& path, std::span<const std::uint8_t> bytes, bool overwrite) {
    std::error_code ignored;
    if (!overwrite && std::filesystem::exists(path, ignored)) {
        return path + " exists already";
    }
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file) {
        return "cannot create " + path;
    }
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file ? "" : "cannot write " + path;
}

}  // namespace samples
