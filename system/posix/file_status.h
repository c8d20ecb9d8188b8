// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_POSIX_FILE_STATUS_H
#define VELMARCON_SYSTEM_POSIX_FILE_STATUS_H

#include <sys/stat.h>

#include <string>

#include "system/file_system.h"
#include "system/retry_on_interrupt.h"

namespace file_system {

/// The status of what stands at `path`; of a symbolic link, its own. Returns 0 or an error number, ENOENT
/// when there is nothing.
inline int StatusOf(const std::string& path, struct stat& status) {
    return RetryOnInterrupt([&] { return ::lstat(path.c_str(), &status); }) == 0 ? 0 : LastError();
}

inline int StatusOf(int descriptor, struct stat& status) {
    return RetryOnInterrupt([&] { return ::fstat(descriptor, &status); }) == 0 ? 0 : LastError();
}

}  // namespace file_system

#endif  // VELMARCON_SYSTEM_POSIX_FILE_STATUS_H
