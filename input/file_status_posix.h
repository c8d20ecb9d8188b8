// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_FILE_STATUS_POSIX_H
#define VELMARCON_INPUT_FILE_STATUS_POSIX_H

#include <sys/stat.h>

#include <string>

#include "input/file_calls.h"
#include "input/interrupted_call.h"

namespace file_calls {

/// The status of what stands at `path`; of a symbolic link, its own. Returns 0 or an error number, ENOENT
/// when there is nothing.
inline int StatusOf(const std::string& path, struct stat& status) {
    return RepeatInterrupted([&] { return ::lstat(path.c_str(), &status); }) == 0 ? 0 : LastError();
}

inline int StatusOf(int descriptor, struct stat& status) {
    return RepeatInterrupted([&] { return ::fstat(descriptor, &status); }) == 0 ? 0 : LastError();
}

}  // namespace file_calls

#endif  // VELMARCON_INPUT_FILE_STATUS_POSIX_H
