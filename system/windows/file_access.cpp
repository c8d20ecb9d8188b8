// SPDX-License-Identifier: MIT
#include <io.h>
#include <windows.h>

#include "system/file_system.h"
#include "system/system_path.h"
#include "system/windows/windows_error.h"

namespace file_system {

int TakeOver(int descriptor, const std::string& path) {
    const DWORD existing = ::GetFileAttributesW(system_path::ToSystem(path).c_str());
    if (existing == INVALID_FILE_ATTRIBUTES) {
        return ErrnoOfLastWindowsError();
    }
    constexpr DWORD kept = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                           FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    FILE_BASIC_INFO status = {};  // times of 0 stay
    status.FileAttributes = (existing & kept) != 0 ? existing & kept : FILE_ATTRIBUTE_NORMAL;
    auto* const file =
        reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));  // NOLINT(performance-no-int-to-ptr)
    // A refusal leaves the attributes of a new file.
    (void)::SetFileInformationByHandle(file, FileBasicInfo, &status, sizeof(status));
    return 0;
}

}  // namespace file_system
