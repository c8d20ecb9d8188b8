// SPDX-License-Identifier: MIT
#include "system/file_lock.h"

#include <windows.h>

#include <cerrno>

#include "system/system_path.h"
#include "system/system_error.h"

FileLock::~FileLock() {
    if (file_ != -1) {
        ::CloseHandle(reinterpret_cast<HANDLE>(
            static_cast<std::intptr_t>(file_)));  // NOLINT(performance-no-int-to-ptr)
    }
}

int FileLock::Take(const std::string& path) {
    auto* const file =
        ::CreateFileW(system_path::ToSystem(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const int error = system_error::Last().value();
        return error == EBUSY ? EWOULDBLOCK : error;
    }
    file_ = static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(file));
    return 0;
}

int FileLock::Descriptor() const {
    return -1;
}
