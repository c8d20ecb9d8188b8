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

/// No error for 0, what a call of the system returned; else the error that it left.
inline std::error_code ErrorOf(int result) {
    return result == 0 ? std::error_code() : system_error::Last();
}

/// The status of what stands at `path`; of a symbolic link, its own. no_such_file_or_directory when there is
/// nothing.
[[nodiscard]] inline std::error_code StatusOf(const std::string& path, struct stat& status) {
    return ErrorOf(RetryOnInterrupt([&] { return ::lstat(path.c_str(), &status); }));
}

[[nodiscard]] inline std::error_code StatusOf(const Handle& file, struct stat& status) {
    return ErrorOf(RetryOnInterrupt([&] { return ::fstat(file.Get(), &status); }));
}

}  // namespace file_system

#endif  // VELMARCON_SYSTEM_POSIX_FILE_STATUS_H
