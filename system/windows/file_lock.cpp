// SPDX-License-Identifier: MIT
#include "system/file_lock.h"

#include <windows.h>

#include "system/system_error.h"
#include "system/system_path.h"

FileLock::~FileLock() {
    if (file_ != -1) {
        ::CloseHandle(reinterpret_cast<HANDLE>(
            static_cast<std::intptr_t>(file_)));  // NOLINT(performance-no-int-to-ptr)
    }
}

/// Whoever reads lets others read; whoever writes lets nobody.
std::error_code FileLock::Take(const std::string& path, Hold hold) {
    const bool alone = hold == Hold::kAlone;
    auto* const file =
        ::CreateFileW(system_path::ToSystem(path).c_str(),
                      alone ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ, alone ? 0 : FILE_SHARE_READ,
                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        const std::error_code error = system_error::Last();
        return error == std::errc::device_or_resource_busy
                   ? std::make_error_code(std::errc::operation_would_block)
                   : error;
    }
    file_ = static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(file));
    return {};
}

int FileLock::Descriptor() const {
    return -1;
}
