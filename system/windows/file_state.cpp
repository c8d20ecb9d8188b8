// SPDX-License-Identifier: MIT
#include "system/file_state.h"

#include <windows.h>

#include "system/handle.h"
#include "system/system_error.h"
#include "system/system_path.h"

namespace {

constexpr unsigned int kWordBits = 32;
constexpr std::int64_t kTicksPerSecond = 10'000'000;      // of 100 ns
constexpr std::int64_t kTick = 100;                       // ns
constexpr std::int64_t kFrom1601To1970 = 11'644'473'600;  // s

std::uint64_t Join(DWORD high, DWORD low) {
    return (std::uint64_t{high} << kWordBits) | low;
}

}  // namespace

std::optional<FileState> StateOf(const std::string& path, std::error_code& error) {
    constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const Handle file(::CreateFileW(system_path::ToSystem(path).c_str(), FILE_READ_ATTRIBUTES, share, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION status = {};
    FILE_BASIC_INFO times = {};
    if (!file.IsOpen() || ::GetFileInformationByHandle(file.Get(), &status) == 0 ||
        ::GetFileInformationByHandleEx(file.Get(), FileBasicInfo, &times, sizeof(times)) == 0) {
        error = system_error::Last();
        return std::nullopt;
    }
    error.clear();
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
