// SPDX-License-Identifier: MIT
#include "system/backups.h"

#include <algorithm>
#include <filesystem>

#include "system/path_names.h"
#include "system/system_path.h"

namespace backups {

namespace fs = std::filesystem;

std::uint32_t HighestNumber(const std::string& path, std::error_code& error) {
    const std::string folder = path_names::SystemFolderPart(path);
    const std::string name = path_names::SystemFileNamePart(path);
    std::uint32_t highest = 0;
    fs::directory_iterator entry(system_path::ToSystem(folder.empty() ? "." : folder), error);
    while (!error && entry != fs::directory_iterator()) {
        const std::string other = system_path::FromSystem(entry->path().filename());
        highest = std::max(highest, path_names::NumberIn(other, name));
        entry.increment(error);
    }
    return highest;
}

std::error_code Make(const std::string& path, std::uint32_t highest, const Content& content,
                     std::string& made) {
    made.clear();
    if (highest > 0 && content.is_in(path_names::NumberedName(path, highest))) {
        return {};
    }
    // Another run may take the same number first.
    std::error_code error = std::make_error_code(std::errc::file_exists);
    for (std::uint32_t number = highest; error == std::errc::file_exists;) {
        made = path_names::NumberedName(path, ++number);
        error = content.write_to(made);
    }
    return error;
}

}  // namespace backups
