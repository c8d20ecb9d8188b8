// SPDX-License-Identifier: MIT
#include "system/file_state.h"

#include <windows.h>

#include <cerrno>

#include "system/system_path.h"
#include "system/windows/windows_error.h"

namespace {

constexpr unsigned int kWordBits = 32;
constexpr std::int64_t kTicksPerSecond = 10'000'000;      // of 100 ns
constexpr std::int64_t kTick = 100;                       // ns
constexpr std::int64_t kFrom1601To1970 = 11'644'473'600;  // s

std::uint64_t Join(DWORD high, DWORD low) {
    return (std::uint64_t{high} << kWordBits) | low;
}

}  // namespace

std::optional<FileState> StateOf(const std::string& path) {
    constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    auto* const file = ::CreateFileW(system_path::ToSystem(path).c_str(), FILE_READ_ATTRIBUTES, share,
                                     nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        errno = ErrnoOfLastWindowsError();
        return std::nullopt;
    }
    BY_HANDLE_FILE_INFORMATION status = {};
    FILE_BASIC_INFO times = {};
    const bool known = ::GetFileInformationByHandle(file, &status) != 0 &&
                       ::GetFileInformationByHandleEx(file, FileBasicInfo, &times, sizeof(times)) != 0;
    const int error = known ? 0 : ErrnoOfLastWindowsError();
    ::CloseHandle(file);
    if (!known) {
        errno = error;
        return std::nullopt;
    }
    const std::int64_t modified = times.LastWriteTime.QuadPart;
    const std::int64_t changed = times.ChangeTime.QuadPart;
    return FileState{status.dwVolumeSerialNumber,
                     Join(status.nFileIndexHigh, status.nFileIndexLow),
                     static_cast<std::int64_t>(Join(status.nFileSizeHigh, status.nFileSizeLow)),
                     modified / kTicksPerSecond - kFrom1601To1970,
                     modified % kTicksPerSecond * kTick,
                     changed / kTicksPerSecond - kFrom1601To1970,
                     changed % kTicksPerSecond * kTick};
}
