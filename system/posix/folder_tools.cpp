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
#include "system/system_error.h"

namespace folder_tools {

namespace {

constexpr mode_t kForTheUserAlone = 0700;
constexpr mode_t kOthers = 0077;

std::error_code MakeOne(const std::string& path) {
    const bool made = RetryOnInterrupt([&] { return ::mkdir(path.c_str(), kForTheUserAlone); }) == 0;
    return made || errno == EEXIST ? std::error_code() : system_error::Last();
}

std::error_code MakeAll(const std::filesystem::path& path) {
    std::filesystem::path made;
    for (const auto& name : path) {
        made /= name;
        std::error_code unknown;
        if (!name.empty() && !std::filesystem::is_directory(made, unknown)) {
            if (const std::error_code error = MakeOne(made.string())) {
                return error;
            }
        }
    }
    return {};
}

/// On the folder itself, which is open: it cannot be exchanged for another one between look and change.
std::error_code CloseToOthers(const Handle& folder) {
    struct stat status = {};
    if (const std::error_code error = file_system::StatusOf(folder, status)) {
        return error;
    }
    if (status.st_uid != ::geteuid()) {
        return std::make_error_code(std::errc::operation_not_permitted);
    }
    if ((status.st_mode & kOthers) == 0) {
        return {};
    }
    return file_system::ErrorOf(RetryOnInterrupt([&] { return ::fchmod(folder.Get(), kForTheUserAlone); }));
}

std::error_code SynchronizeWith(const std::string& path) {
    const Handle file(
        RetryOnInterrupt([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    return file.IsOpen() ? file_system::SynchronizeVolume(file) : system_error::Last();
}

}  // namespace

std::error_code MakePrivate(const std::string& path) {
    if (const std::error_code error = MakeAll(path)) {
        return error;
    }
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    const Handle folder(RetryOnInterrupt([&] { return ::open(path.c_str(), flags); }));
    return folder.IsOpen() ? CloseToOthers(folder) : system_error::Last();
}

std::error_code FreeBytes(const std::string& folder, std::uint64_t& bytes) {
    struct statvfs volume = {};
    if (RetryOnInterrupt([&] { return ::statvfs(folder.c_str(), &volume); }) != 0) {
        return system_error::Last();
    }
    bytes = std::uint64_t{volume.f_bavail} * volume.f_frsize;
    return {};
}

std::vector<std::error_code> PutOnDisk(std::span<const std::string> files) {
    std::map<dev_t, std::error_code> done;  // by file system
    std::vector<std::error_code> errors;
    errors.reserve(files.size());
    for (const std::string& file : files) {
        struct stat status = {};
        std::error_code error = file_system::StatusOf(file, status);
        if (!error) {
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
