// SPDX-License-Identifier: MIT
#include "system/system_path.h"

#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <fstream>

#include "base/utf16.h"
#include "system/handle.h"

namespace system_path {

namespace {

/// Windows takes a path with the first prefix literally, so `/` is not a separator in it. The second is the
/// prefix of devices.
constexpr std::wstring_view kAsItStands = L"\\\\?\\";
constexpr std::wstring_view kDevices = L"\\\\.\\";

std::wstring ToWide(const std::string& path) {
    const std::u16string units = utf16::FromUtf8(path);
    std::wstring wide(units.begin(), units.end());
    if (wide.starts_with(kAsItStands)) {
        std::ranges::replace(wide, L'/', L'\\');
    }
    return wide;
}

}  // namespace

std::string FromWide(std::wstring_view text) {
    return utf16::ToUtf8(std::u16string(text.begin(), text.end()));
}

std::filesystem::path ToSystem(const std::string& path) {
    return ToWide(path);
}

bool IsDevice(const std::string& path) {
    const std::wstring name = ToWide(path);
    std::wstring full(::GetFullPathNameW(name.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(::GetFullPathNameW(name.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full.starts_with(kDevices);
}

namespace {

/// Finds out without opening the file for reading.
bool IsPlainFile(const std::string& path) {
    if (IsDevice(path)) {
        return false;
    }
    constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    // The flag lets this open folders, too. A link is followed. Nothing is read.
    const Handle file(::CreateFileW(ToWide(path).c_str(), FILE_READ_ATTRIBUTES, share, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION status = {};
    return file.IsOpen() && ::GetFileType(file.Get()) == FILE_TYPE_DISK &&
           ::GetFileInformationByHandle(file.Get(), &status) != 0 &&
           (status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

std::error_code OpenPlainFile(const std::string& path, std::ifstream& stream) {
    if (!IsPlainFile(path)) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    errno = 0;
    stream.open(ToSystem(path), std::ios::binary | std::ios::ate);
    return stream.is_open() ? std::error_code()
                            : std::error_code(errno != 0 ? errno : EIO, std::generic_category());
}

}  // namespace system_path
