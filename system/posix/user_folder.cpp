// SPDX-License-Identifier: MIT
#include "system/posix/user_folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "system/system_error.h"

namespace user_folder {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kForTheUserAlone = 0700;

/// Whether this is root, about to make a folder in another user's: sudo may keep HOME.
bool BelongsToAnother(const fs::path& folder) {
    struct stat status = {};
    return ::geteuid() == 0 && ::stat(folder.c_str(), &status) == 0 && status.st_uid != 0;
}

std::error_code Make(const fs::path& folder) {
    if (::mkdir(folder.c_str(), kForTheUserAlone) == 0) {
        return {};
    }
    const std::error_code error = system_error::Last();
    return error == std::errc::file_exists ? std::error_code() : error;
}

}  // namespace

std::filesystem::path Home() {
    const char* home = std::getenv("HOME");
    if (home != nullptr && fs::path(home).is_absolute()) {
        return home;
    }
    const struct passwd* user = ::getpwuid(::getuid());
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

std::error_code MakePrivate(const std::filesystem::path& folder) {
    fs::path made;
    for (const fs::path& name : folder) {
        const fs::path parent = made;
        made /= name;
        std::error_code unknown;
        if (fs::is_directory(made, unknown)) {
            continue;
        }
        if (BelongsToAnother(parent)) {
            return std::make_error_code(std::errc::operation_not_permitted);
        }
        if (const std::error_code error = Make(made)) {
            return error;
        }
    }
    return {};
}

}  // namespace user_folder
