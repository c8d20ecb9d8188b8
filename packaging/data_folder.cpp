// SPDX-License-Identifier: MIT
#include "packaging/data_folder.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
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

constexpr std::string_view kPartBegin = ".lensdb-";
constexpr std::string_view kPartEnd = ".part";

/// The name of what process `number` copies.
fs::path PartName(pid_t number) {
    return std::string(kPartBegin) + std::to_string(number) + std::string(kPartEnd);
}

/// Removes what processes left in the folder that are no more.
void RemoveStaleParts(const fs::path& folder) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        if (!name.starts_with(kPartBegin) || !name.ends_with(kPartEnd)) {
            continue;
        }
        pid_t number = 0;
        std::from_chars(name.data() + kPartBegin.size(), name.data() + name.size(), number);
        if (name == PartName(number) && ::kill(number, 0) != 0 && errno == ESRCH) {
            fs::remove(entry.path(), error);
        }
    }
}

/// Waits until the file is on disk. Returns 0 or the system's error number.
int Synchronize(const fs::path& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return errno;
    }
    const int error = ::fsync(descriptor) == 0 ? 0 : errno;
    ::close(descriptor);
    return error;
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
    RemoveStaleParts(final_path.parent_path());
    const fs::path part = final_path.parent_path() / PartName(::getpid());
    fs::copy_file(source, part, error);
    int failed = error.value();
    if (failed == 0) {
        failed = Synchronize(part);
    }
    if (failed == 0) {
        failed = GiveName(part, final_path);
    }
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
