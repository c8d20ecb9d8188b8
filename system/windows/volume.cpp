// SPDX-License-Identifier: MIT
#include <windows.h>

#include <array>
#include <string_view>

#include "system/file_system.h"
#include "system/system_path.h"

namespace file_system {

bool LosesReplacedFiles(const std::string& path) {
    constexpr DWORD length = MAX_PATH + 1;
    std::array<wchar_t, length> volume = {};
    std::array<wchar_t, length> type = {};
    const bool known =
        ::GetVolumePathNameW(system_path::ToSystem(path).c_str(), volume.data(), length) != 0 &&
        ::GetVolumeInformationW(volume.data(), nullptr, 0, nullptr, nullptr, nullptr, type.data(), length) !=
            0;
    const std::wstring_view name = type.data();
    return known && (name.starts_with(L"FAT") || name == L"exFAT");
}

/// Only an administrator may flush a whole volume. A file is enough: renaming waits until the new name is on
/// the disk.
std::error_code SynchronizeVolume(const Handle& file) {
    return Synchronize(file);
}

/// Opens nothing: Windows could not replace an open file.
std::error_code Hold(const std::string& /*path*/, Handle& file) {
    file = Handle();
    return {};
}

}  // namespace file_system
