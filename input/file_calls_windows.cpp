// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <string_view>

#include "exif/system_path.h"
#include "input/file_calls.h"
#include "input/windows_error.h"

namespace file_calls {

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
        return LastWindowsError();
    }
    name.resize(::GetFinalPathNameByHandleW(file, nullptr, 0, FILE_NAME_NORMALIZED));
    const DWORD length =
        ::GetFinalPathNameByHandleW(file, name.data(), static_cast<DWORD>(name.size()), FILE_NAME_NORMALIZED);
    const int error = length == 0 || length >= name.size() ? LastWindowsError() : 0;
    ::CloseHandle(file);
    name.resize(error == 0 ? length : 0);
    name = WithoutPrefix(name);
    return error;
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

/// The extension in capitals, which are the same to Windows.
std::filesystem::path RealName(const std::string& path, std::error_code& error) {
    std::wstring name;
    error.assign(FindRealName(path, name), std::generic_category());
    std::filesystem::path real = name;
    std::wstring extension = real.extension().native();
    std::ranges::transform(extension, extension.begin(), [](wchar_t letter) {
        return letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - L'a' + L'A') : letter;
    });
    return real.replace_extension(extension);
}

int KindOf(const std::string& path, Kind& kind) {
    kind = Kind::kOther;
    if (system_path::IsDevice(path)) {
        return 0;
    }
    const DWORD attributes = AttributesOf(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        kind = Kind::kNothing;
        const int error = LastWindowsError();
        return error == ENOENT ? 0 : error;
    }
    kind = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Kind::kFolder : Kind::kPlainFile;
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
        return LastWindowsError();
    }
    ::CloseHandle(file);
    return 0;
}

std::string FolderOf(const std::string& path) {
    return path.substr(0, path.find_last_of("\\/") + 1);
}

bool IsTaken(const std::string& path) {
    return AttributesOf(path) != INVALID_FILE_ATTRIBUTES || LastWindowsError() != ENOENT;
}

/// A run that is writing the file has it open, and no other can open it for itself alone.
bool RemoveStale(const std::string& path) {
    constexpr DWORD alone = 0;
    auto* const file = OpenExisting(path, DELETE | FILE_READ_ATTRIBUTES, alone, FILE_FLAG_OPEN_REPARSE_POINT);
    if (file == INVALID_HANDLE_VALUE) {
        return false;
    }
    constexpr DWORD not_plain = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    BY_HANDLE_FILE_INFORMATION status = {};
    FILE_DISPOSITION_INFO removal = {};
    removal.DeleteFile = TRUE;
    const bool stale =
        ::GetFileType(file) == FILE_TYPE_DISK && ::GetFileInformationByHandle(file, &status) != 0 &&
        (status.dwFileAttributes & not_plain) == 0 &&
        ::SetFileInformationByHandle(file, FileDispositionInfo, &removal, sizeof(removal)) != 0;
    ::CloseHandle(file);
    return stale;
}

int CreateLocked(const std::string& path) {
    const auto create = [&] {
        return ::CreateFileW(ToSystem(path).c_str(), GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr,
                             CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    };
    HANDLE file = create();
    if (file == INVALID_HANDLE_VALUE && ::GetLastError() == ERROR_FILE_EXISTS) {
        RemoveStale(path);
        file = create();
    }
    if (file == INVALID_HANDLE_VALUE) {
        errno = LastWindowsError();
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

int SizeOf(int descriptor, std::uint64_t& size) {
    LARGE_INTEGER length = {};
    const int error = ::GetFileSizeEx(HandleOf(descriptor), &length) != 0 ? 0 : LastWindowsError();
    size = static_cast<std::uint64_t>(length.QuadPart);
    return error;
}

int PrepareToReplace(int descriptor, const std::string& path) {
    const DWORD existing = AttributesOf(path);
    if (existing == INVALID_FILE_ATTRIBUTES) {
        const int error = LastWindowsError();
        return error == ENOENT ? 0 : error;
    }
    constexpr DWORD kept = FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                           FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    FILE_BASIC_INFO status = {};  // times of 0 stay
    status.FileAttributes = (existing & kept) != 0 ? existing & kept : FILE_ATTRIBUTE_NORMAL;
    // A refusal leaves the attributes of a new file.
    (void)::SetFileInformationByHandle(HandleOf(descriptor), FileBasicInfo, &status, sizeof(status));
    return ::FlushFileBuffers(HandleOf(descriptor)) != 0 ? 0 : LastWindowsError();
}

/// Whoever looks through new files, for viruses or for a search, may have one of the two open for a moment.
int Rename(const std::string& from, const std::string& to) {
    constexpr int most_tries = 20;
    constexpr DWORD pause = 50;  // ms
    for (int i = 1;; ++i) {
        if (::MoveFileExW(ToSystem(from).c_str(), ToSystem(to).c_str(), MOVEFILE_REPLACE_EXISTING) != 0) {
            return 0;
        }
        const int error = LastWindowsError();
        if ((error != EBUSY && error != EACCES) || i == most_tries) {
            return error;
        }
        ::Sleep(pause);
    }
}

void Remove(const std::string& path) {
    ::DeleteFileW(ToSystem(path).c_str());
}

void Close(int descriptor) {
    ::_close(descriptor);
}

}  // namespace file_calls
