// SPDX-License-Identifier: MIT
#include <windows.h>

#include "system/file_system.h"
#include "system/system_error.h"
#include "system/system_path.h"

namespace file_system {

std::error_code TakeOver(const Handle& file, const std::string& path) {
    const DWORD existing = ::GetFileAttributesW(system_path::ToSystem(path).c_str());
    if (existing == INVALID_FILE_ATTRIBUTES) {
        return system_error::Last();
    }
    constexpr DWORD kept = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                           FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    FILE_BASIC_INFO status = {};  // a time of 0 leaves that time unchanged
    status.FileAttributes = (existing & kept) != 0 ? existing & kept : FILE_ATTRIBUTE_NORMAL;
    // If this is refused, the file keeps the attributes of a new file.
    (void)::SetFileInformationByHandle(file.Get(), FileBasicInfo, &status, sizeof(status));
    return {};
}

}  // namespace file_system
