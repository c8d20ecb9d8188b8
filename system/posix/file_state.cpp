// SPDX-License-Identifier: MIT
#include "system/file_state.h"

#include <sys/stat.h>

#include "system/retry_on_interrupt.h"
#include "system/system_error.h"

std::optional<FileState> StateOf(const std::string& path, std::error_code& error) {
    struct stat status = {};
    if (RetryOnInterrupt([&] { return ::stat(path.c_str(), &status); }) != 0) {
        error = system_error::Last();
        return std::nullopt;
    }
    error.clear();
#if defined(__APPLE__)
    const auto& modified = status.st_mtimespec;
    const auto& changed = status.st_ctimespec;
#else
    const auto& modified = status.st_mtim;
    const auto& changed = status.st_ctim;
#endif
    // The types of device and inode differ from system to system, in size and sign.
    return FileState{static_cast<std::uint64_t>(status.st_dev),
                     static_cast<std::uint64_t>(status.st_ino),
                     status.st_size,
                     modified.tv_sec,
                     modified.tv_nsec,
                     changed.tv_sec,
                     changed.tv_nsec};
}
