// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_POSIX_FILE_STATUS_H
#define VELMARCON_SYSTEM_POSIX_FILE_STATUS_H

#include <sys/stat.h>

#include <string>
#include <system_error>

#include "system/handle.h"
#include "system/retry_on_interrupt.h"
#include "system/system_error.h"

namespace file_system {

/// The error of a system call that returned `result`; no error for 0.
inline std::error_code ErrorOf(int result) {
    return result == 0 ? std::error_code() : system_error::Last();
}

/// Gets the status of the file, folder or link at `path`, without following a link. Returns
/// no_such_file_or_directory if there is none.
[[nodiscard]] inline std::error_code StatusOf(const std::string& path, struct stat& status) {
    return ErrorOf(RetryOnInterrupt([&] { return ::lstat(path.c_str(), &status); }));
}

[[nodiscard]] inline std::error_code StatusOf(const Handle& file, struct stat& status) {
    return ErrorOf(RetryOnInterrupt([&] { return ::fstat(file.Get(), &status); }));
}

}  // namespace file_system

#endif  // VELMARCON_SYSTEM_POSIX_FILE_STATUS_H
