// SPDX-License-Identifier: MIT
#include "batch/existing_folder.h"

#include <filesystem>
#include <system_error>

#include "system/system_path.h"

std::string ExistingFolder(std::string path) {
    std::error_code unknown;
    while (path.size() > 1 && !std::filesystem::is_directory(system_path::ToSystem(path), unknown)) {
        path = path.substr(0, path.find_last_of('/', path.size() - 2) + 1);
    }
    return path;
}
