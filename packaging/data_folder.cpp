// SPDX-License-Identifier: MIT
#include "packaging/data_folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "packaging/whole_copy.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kLensDatabase = "lensdb.ini";
constexpr mode_t kForTheUserAlone = 0700;

fs::path HomeFolder() {
    const char* home = std::getenv("HOME");  // NOLINT(concurrency-mt-unsafe): there is one thread
    if (home != nullptr && fs::path(home).is_absolute()) {
        return home;
    }
    const struct passwd* user = ::getpwuid(::getuid());  // NOLINT(concurrency-mt-unsafe)
    return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "";
}

/// Whether root is about to make a folder in another user's, who could not enter it: sudo may keep HOME.
bool BelongsToAnother(const fs::path& folder) {
    struct stat status = {};
    return ::geteuid() == 0 && ::stat(folder.c_str(), &status) == 0 && status.st_uid != 0;
}

/// Makes the folder, and those that it lies in. Returns 0 or the system's error number.
int MakeFolders(const fs::path& folder) {
    fs::path made;
    for (const fs::path& name : folder) {
        const fs::path parent = made;
        made /= name;
        std::error_code unknown;
        if (fs::is_directory(made, unknown)) {
            continue;
        }
        if (BelongsToAnother(parent)) {
            return EPERM;
        }
        if (::mkdir(made.c_str(), kForTheUserAlone) != 0 && errno != EEXIST) {
            return errno;
        }
    }
    return 0;
}

}  // namespace

std::filesystem::path DataFolder() {
    const char* data_home = std::getenv("XDG_DATA_HOME");  // NOLINT(concurrency-mt-unsafe)
    if (data_home != nullptr && fs::path(data_home).is_absolute()) {
        return fs::path(data_home) / "velmarcon";
    }
    const fs::path home = HomeFolder();
    return home.empty() ? home : home / ".local" / "share" / "velmarcon";
}

int MakeDataFolder(const std::filesystem::path& folder) {
    return folder.empty() ? ENOENT : MakeFolders(folder);
}

int CopyLensDatabase(const std::filesystem::path& source, const std::filesystem::path& folder) {
    const fs::path own = folder / kLensDatabase;
    std::error_code error;
    if (fs::exists(fs::symlink_status(own, error))) {
        return 0;
    }
    const int failed = CopyWhole(source, own);
    return failed == EEXIST ? 0 : failed;
}
