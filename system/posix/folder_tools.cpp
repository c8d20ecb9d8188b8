// SPDX-License-Identifier: MIT
#include "system/folder_tools.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "system/file_system.h"
#include "system/posix/file_status.h"
#include "system/retry_on_interrupt.h"

namespace folder_tools {

namespace {

constexpr mode_t kForTheUserAlone = 0700;
constexpr mode_t kOthers = 0077;

int MakeOne(const std::string& path) {
    const bool made = RetryOnInterrupt([&] { return ::mkdir(path.c_str(), kForTheUserAlone); }) == 0;
    return made || errno == EEXIST ? 0 : file_system::LastError();
}

int MakeAll(const std::filesystem::path& path) {
    std::filesystem::path made;
    for (const auto& name : path) {
        made /= name;
        std::error_code unknown;
        if (!name.empty() && !std::filesystem::is_directory(made, unknown)) {
            if (const int error = MakeOne(made.string()); error != 0) {
                return error;
            }
        }
    }
    return 0;
}

/// On the folder itself, which is open: it cannot be exchanged for another one between look and change.
int CloseToOthers(int folder) {
    struct stat status = {};
    if (const int error = file_system::StatusOf(folder, status); error != 0) {
        return error;
    }
    if (status.st_uid != ::geteuid()) {
        return EPERM;
    }
    if ((status.st_mode & kOthers) == 0) {
        return 0;
    }
    return RetryOnInterrupt([&] { return ::fchmod(folder, kForTheUserAlone); }) == 0
               ? 0
               : file_system::LastError();
}

int SynchronizeWith(const std::string& file) {
    const int descriptor =
        RetryOnInterrupt([&] { return ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); });
    if (descriptor < 0) {
        return file_system::LastError();
    }
    const int error = file_system::SynchronizeVolume(descriptor);
    ::close(descriptor);
    return error;
}

}  // namespace

int MakePrivate(const std::string& path) {
    if (const int error = MakeAll(path); error != 0) {
        return error;
    }
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const int folder = RetryOnInterrupt([&] { return ::open(path.c_str(), flags); });
    if (folder < 0) {
        return file_system::LastError();
    }
    const int error = CloseToOthers(folder);
    ::close(folder);
    return error;
}

int FreeBytes(const std::string& folder, std::uint64_t& bytes) {
    struct statvfs volume = {};
    if (RetryOnInterrupt([&] { return ::statvfs(folder.c_str(), &volume); }) != 0) {
        return file_system::LastError();
    }
    bytes = std::uint64_t{volume.f_bavail} * volume.f_frsize;
    return 0;
}

std::vector<int> PutOnDisk(std::span<const std::string> files) {
    std::map<dev_t, int> done;  // by file system
    std::vector<int> errors;
    errors.reserve(files.size());
    for (const std::string& file : files) {
        struct stat status = {};
        int error = file_system::StatusOf(file, status);
        if (error == 0) {
            auto found = done.find(status.st_dev);
            if (found == done.end()) {
                found = done.emplace(status.st_dev, SynchronizeWith(file)).first;
            }
            error = found->second;
        }
        errors.push_back(error);
    }
    return errors;
}

}  // namespace folder_tools
