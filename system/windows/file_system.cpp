// SPDX-License-Identifier: MIT
#include "system/file_system.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "system/system_path.h"
#include "system/windows/windows_error.h"

namespace file_system {

namespace {

using system_path::ToSystem;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Opens what stands at `path` for `access`, while others do with it what `share` leaves them. Returns a
/// handle or INVALID_HANDLE_VALUE.
HANDLE OpenExisting(const std::string& path, DWORD access, DWORD share, DWORD flags) {
    return ::CreateFileW(ToSystem(path).c_str(), access, share, nullptr, OPEN_EXISTING, flags, nullptr);
}

/// Of a symbolic link, its own; INVALID_FILE_ATTRIBUTES when there are none.
DWORD AttributesOf(const std::string& path) {
    return ::GetFileAttributesW(ToSystem(path).c_str());
}

HANDLE HandleOf(int descriptor) {
    return reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));  // NOLINT(performance-no-int-to-ptr)
}

/// A path without the prefix that switches off what Windows otherwise does to paths.
std::wstring WithoutPrefix(const std::wstring& path) {
    constexpr std::wstring_view network = L"\\\\?\\UNC\\";
    constexpr std::wstring_view local = L"\\\\?\\";
    if (path.starts_with(network)) {
        return L"\\\\" + path.substr(network.size());
    }
    return path.starts_with(local) ? path.substr(local.size()) : path;
}

/// The file at `path` by its real name. Returns 0 or an error number.
int FindRealName(const std::string& path, std::wstring& name) {
    auto* const file = OpenExisting(path, FILE_READ_ATTRIBUTES, kShareAll, FILE_FLAG_BACKUP_SEMANTICS);
    if (file == INVALID_HANDLE_VALUE) {
        return ErrnoOfLastWindowsError();
    }
    name.resize(::GetFinalPathNameByHandleW(file, nullptr, 0, FILE_NAME_NORMALIZED));
    const DWORD length =
        ::GetFinalPathNameByHandleW(file, name.data(), static_cast<DWORD>(name.size()), FILE_NAME_NORMALIZED);
    const int error = length == 0 || length >= name.size() ? ErrnoOfLastWindowsError() : 0;
    ::CloseHandle(file);
    name.resize(error == 0 ? length : 0);
    name = WithoutPrefix(name);
    return error;
}

/// Negative for a time to come.
std::int64_t SecondsSince(const FILETIME& time) {
    constexpr std::int64_t ticks = 10'000'000;  // of 100 ns a second
    FILETIME now = {};
    ::GetSystemTimeAsFileTime(&now);
    const auto in_ticks = [](const FILETIME& moment) {
        return static_cast<std::int64_t>(
            ULARGE_INTEGER{{moment.dwLowDateTime, moment.dwHighDateTime}}.QuadPart);
    };
    return (in_ticks(now) - in_ticks(time)) / ticks;
}

}  // namespace

const char* ErrorText(int error) {
    return error == EBUSY ? "The file is in use by another program" : std::strerror(error);
}

int FollowLinks(const std::string& path, std::string& target) {
    target = path;
    const DWORD attributes = AttributesOf(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return 0;
    }
    std::wstring name;
    const int error = FindRealName(path, name);
    target = system_path::FromWide(name);
    return error;
}

int KindOf(const std::string& path, Kind& kind) {
    kind = Kind::kOther;
    if (system_path::IsDevice(path)) {
        return 0;
    }
    const DWORD attributes = AttributesOf(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        kind = Kind::kNothing;
        const int error = ErrnoOfLastWindowsError();
        return error == ENOENT ? 0 : error;
    }
    kind = Kind::kPlainFile;
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        kind = Kind::kLink;
    } else if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        kind = Kind::kFolder;
    }
    return 0;
}

/// One that a program has open in a way that forbids to write it could not be replaced at the end, either.
int CheckWritable(const std::string& path) {
    const DWORD attributes = AttributesOf(path);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return EACCES;
    }
    auto* const file = OpenExisting(path, GENERIC_WRITE, kShareAll, FILE_ATTRIBUTE_NORMAL);
    if (file == INVALID_HANDLE_VALUE) {
        return ErrnoOfLastWindowsError();
    }
    ::CloseHandle(file);
    return 0;
}

std::string FolderOf(const std::string& path) {
    return path.substr(0, path.find_last_of("\\/") + 1);
}

bool IsTaken(const std::string& path) {
    return AttributesOf(path) != INVALID_FILE_ATTRIBUTES || ErrnoOfLastWindowsError() != ENOENT;
}

int CreateNew(const std::string& path, Readers /*readers*/) {
    auto* const file = ::CreateFileW(ToSystem(path).c_str(), GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr,
                                     CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        errno = ErrnoOfLastWindowsError();
        return -1;
    }
    const int descriptor =
        ::_open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_RDWR | _O_BINARY | _O_NOINHERIT);
    if (descriptor < 0) {
        const int error = LastError();
        ::CloseHandle(file);
        Remove(path);
        errno = error;
    }
    return descriptor;
}

/// A run that is writing the file has it open, and no other can open it for itself alone.
void RemoveAbandoned(const std::string& path, std::int64_t least_age) {
    constexpr DWORD alone = 0;
    auto* const file = OpenExisting(path, DELETE | FILE_READ_ATTRIBUTES, alone, FILE_FLAG_OPEN_REPARSE_POINT);
    if (file == INVALID_HANDLE_VALUE) {
        return;
    }
    constexpr DWORD not_plain = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    BY_HANDLE_FILE_INFORMATION status = {};
    if (::GetFileType(file) == FILE_TYPE_DISK && ::GetFileInformationByHandle(file, &status) != 0 &&
        (status.dwFileAttributes & not_plain) == 0 && SecondsSince(status.ftLastWriteTime) >= least_age) {
        FILE_DISPOSITION_INFO removal = {};
        removal.DeleteFile = TRUE;
        ::SetFileInformationByHandle(file, FileDispositionInfo, &removal, sizeof(removal));
    }
    ::CloseHandle(file);
}

int Write(int descriptor, std::span<const char> bytes) {
    constexpr std::size_t most_at_once = std::size_t{1} << 30U;
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), most_at_once));
        DWORD written = 0;
        if (::WriteFile(HandleOf(descriptor), piece.data(), static_cast<DWORD>(piece.size()), &written,
                        nullptr) == 0) {
            return ErrnoOfLastWindowsError();
        }
        if (written == 0) {
            return EIO;  // it would be so for ever
        }
        bytes = bytes.subspan(written);
    }
    return 0;
}

/// Nothing is kept back.
int Flush(int /*descriptor*/) {
    return 0;
}

int SizeOf(int descriptor, std::uint64_t& size) {
    LARGE_INTEGER length = {};
    const int error = ::GetFileSizeEx(HandleOf(descriptor), &length) != 0 ? 0 : ErrnoOfLastWindowsError();
    size = static_cast<std::uint64_t>(length.QuadPart);
    return error;
}

/// Who takes the file for a stale one cannot remove it while it is open.
int CheckName(int /*descriptor*/, const std::string& path) {
    return IsTaken(path) ? 0 : ENOENT;
}

int Synchronize(int descriptor) {
    return ::FlushFileBuffers(HandleOf(descriptor)) != 0 ? 0 : ErrnoOfLastWindowsError();
}

void Remove(const std::string& path) {
    ::DeleteFileW(ToSystem(path).c_str());
}

void Close(int descriptor) {
    ::_close(descriptor);
}

}  // namespace file_system
