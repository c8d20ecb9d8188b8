// SPDX-License-Identifier: MIT
#include "packaging/data_folder.h"

#include <cstdlib>

#include "packaging/whole_copy.h"
#include "system/path_names.h"
#include "system/posix/user_folder.h"

namespace fs = std::filesystem;

std::filesystem::path DataFolder() {
    const char* data_home = std::getenv("XDG_DATA_HOME");
    if (data_home != nullptr && fs::path(data_home).is_absolute()) {
        return fs::path(data_home) / "velmarcon";
    }
    const fs::path home = user_folder::Home();
    return home.empty() ? home : home / ".local" / "share" / "velmarcon";
}

std::error_code MakeDataFolder(const std::filesystem::path& folder) {
    return folder.empty() ? std::make_error_code(std::errc::no_such_file_or_directory)
                          : user_folder::MakePrivate(folder);
}

std::error_code CopyLensDatabase(const std::filesystem::path& source, const std::filesystem::path& folder) {
    const fs::path own = folder / path_names::kLensDatabase;
    std::error_code unknown;
    if (fs::exists(fs::symlink_status(own, unknown))) {
        return {};
    }
    const std::error_code error = CopyWhole(source, own);
    return error == std::errc::file_exists ? std::error_code() : error;
}
