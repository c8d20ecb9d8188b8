// SPDX-License-Identifier: MIT
#include "packaging/data_folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

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

/// Returns 0 or the system's error number.
int MakeFolders(const fs::path& folder) {
    std::error_code unknown;
    if (fs::is_directory(folder, unknown)) {
        return 0;
    }
    if (folder.has_parent_path() && folder.parent_path() != folder) {
        if (const int error = MakeFolders(folder.parent_path()); error != 0) {
            return error;
        }
    }
    return ::mkdir(folder.c_str(), kForTheUserAlone) == 0 || errno == EEXIST ? 0 : errno;
}

/// Gives `part` the name `final_path` unless that is taken. Not by renaming, which replaces what is there;
/// only a file system without hard links leaves nothing else.
int GiveName(const fs::path& part, const fs::path& final_path) {
    if (::link(part.c_str(), final_path.c_str()) == 0 || errno == EEXIST) {
        return 0;
    }
    std::error_code error;
    if (!fs::exists(fs::symlink_status(final_path, error))) {
        fs::rename(part, final_path, error);
    }
    return error.value();
}

/// Returns 0 or the system's error number.
int CopyUnlessThere(const fs::path& source, const fs::path& final_path) {
    std::error_code error;
    if (fs::exists(fs::symlink_status(final_path, error))) {
        return 0;
    }
    const fs::path part = final_path.parent_path() / (".lensdb-" + std::to_string(::getpid()) + ".part");
    // What another process of this number left, long ago.
    fs::copy_file(source, part, fs::copy_options::overwrite_existing, error);
    const int failed = error ? error.value() : GiveName(part, final_path);
    fs::remove(part, error);
    return failed;
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

int PrepareDataFolder(const std::filesystem::path& folder, const std::filesystem::path& lens_database) {
    if (const int error = MakeFolders(folder); error != 0) {
        return error;
    }
    return CopyUnlessThere(lens_database, folder / kLensDatabase);
}
