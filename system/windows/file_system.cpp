// SPDX-License-Identifier: MIT
#include "system/file_system.h"

#include <windows.h>

#include <algorithm>
#include <string_view>

#include "system/system_error.h"
#include "system/system_path.h"

namespace file_system {

namespace {

using system_path::ToSystem;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Opens the existing file, folder or link at `path` for `access`. `share` is what other programs may do with
/// it meanwhile.
Handle OpenExisting(const std::string& path, DWORD access, DWORD share, DWORD flags) {
    return Handle(
        ::CreateFileW(ToSystem(path).c_str(), access, share, nullptr, OPEN_EXISTING, flags, nullptr));
}

/// The attributes of what is at `path`, without following a link; INVALID_FILE_ATTRIBUTES if there is
/// nothing.
DWORD AttributesOf(const std::string& path) {
    return ::GetFileAttributesW(ToSystem(path).c_str());
}

/// No error if a call of Windows succeeded, that is, if `done`; otherwise its error.
std::error_code ErrorUnless(bool done) {
    return done ? std::error_code() : system_error::Last();
}

/// A path without the prefix that stops Windows from interpreting it.
std::wstring WithoutPrefix(const std::wstring& path) {
    constexpr std::wstring_view network = L"\\\\?\\UNC\\";
    constexpr std::wstring_view local = L"\\\\?\\";
    if (path.starts_with(network)) {
        return L"\\\\" + path.substr(network.size());
    }
    return path.starts_with(local) ? path.substr(local.size()) : path;
}

/// Finds the real name of the file at `path`.
std::error_code FindRealName(const std::string& path, std::wstring& name) {
    const Handle file = OpenExisting(path, FILE_READ_ATTRIBUTES, kShareAll, FILE_FLAG_BACKUP_SEMANTICS);
    if (!file.IsOpen()) {
        return system_error::Last();
    }
    name.resize(::GetFinalPathNameByHandleW(file.Get(), nullptr, 0, FILE_NAME_NORMALIZED));
    const DWORD length = ::GetFinalPathNameByHandleW(file.Get(), name.data(), static_cast<DWORD>(name.size()),
                                                     FILE_NAME_NORMALIZED);
    const std::error_code error = ErrorUnless(length != 0 && length < name.size());
    name.resize(error ? 0 : length);
    name = WithoutPrefix(name);
    return error;
}

/// 0 also if the time is in the future: the clock of a server may be fast.
std::int64_t SecondsSince(const FILETIME& time) {
    constexpr std::int64_t ticks = 10'000'000;  // a second, in ticks of 100 ns
    FILETIME now = {};
    ::GetSystemTimeAsFileTime(&now);
    const auto in_ticks = [](const FILETIME& moment) {
        return static_cast<std::int64_t>(
            ULARGE_INTEGER{{moment.dwLowDateTime, moment.dwHighDateTime}}.QuadPart);
    };
    return std::max((in_ticks(now) - in_ticks(time)) / ticks, std::int64_t{0});
}

}  // namespace

std::error_code FollowLinks(const std::string& path, std::string& target) {
    target = path;
    const DWORD attributes = AttributesOf(path);
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return {};
    }
    std::wstring name;
    const std::error_code error = FindRealName(path, name);
    target = system_path::FromWide(name);
    return error;
}

std::error_code KindOf(const std::string& path, Kind& kind) {
    kind = Kind::kOther;
    if (system_path::IsDevice(path)) {
        return {};
    }
    const DWORD attributes = AttributesOf(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        kind = Kind::kNothing;
        const std::error_code error = system_error::Last();
        return error == std::errc::no_such_file_or_directory ? std::error_code() : error;
    }
    kind = Kind::kPlainFile;
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        kind = Kind::kLink;
    } else if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        kind = Kind::kFolder;
    }
    return {};
}

/// A file that another program has open, without letting others write it, could not be replaced at the end,
/// either.
std::error_code CheckWritable(const std::string& path) {
    const DWORD attributes = AttributesOf(path);
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        return std::make_error_code(std::errc::permission_denied);
    }
    return ErrorUnless(OpenExisting(path, GENERIC_WRITE, kShareAll, FILE_ATTRIBUTE_NORMAL).IsOpen());
}

bool IsTaken(const std::string& path) {
    return AttributesOf(path) != INVALID_FILE_ATTRIBUTES ||
           system_error::Last() != std::errc::no_such_file_or_directory;
}

std::error_code CreateNew(const std::string& path, std::filesystem::perms /*permissions*/, Handle& file) {
    file = Handle(::CreateFileW(ToSystem(path).c_str(), GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr,
                                CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    return ErrorUnless(file.IsOpen());
}

/// Opening the file without sharing fails while another run has it open.
void RemoveAbandoned(const std::string& path, std::int64_t least_age) {
    constexpr DWORD alone = 0;
    const Handle file =
        OpenExisting(path, DELETE | FILE_READ_ATTRIBUTES, alone, FILE_FLAG_OPEN_REPARSE_POINT);
    constexpr DWORD not_plain = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    BY_HANDLE_FILE_INFORMATION status = {};
    if (file.IsOpen() && ::GetFileType(file.Get()) == FILE_TYPE_DISK &&
        ::GetFileInformationByHandle(file.Get(), &status) != 0 &&
        (status.dwFileAttributes & not_plain) == 0 && SecondsSince(status.ftLastWriteTime) >= least_age) {
        FILE_DISPOSITION_INFO removal = {};
        removal.DeleteFile = TRUE;
        ::SetFileInformationByHandle(file.Get(), FileDispositionInfo, &removal, sizeof(removal));
    }
}

std::error_code Write(const Handle& file, std::span<const char> bytes) {
    constexpr std::size_t most_at_once = std::size_t{1} << 30U;
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), most_at_once));
        DWORD written = 0;
        if (::WriteFile(file.Get(), piece.data(), static_cast<DWORD>(piece.size()), &written, nullptr) == 0) {
            return system_error::Last();
        }
        if (written == 0) {
            return std::make_error_code(std::errc::io_error);  // a retry would loop for ever
        }
        bytes = bytes.subspan(written);
    }
    return {};
}

/// WriteFile holds nothing back.
std::error_code Flush(const Handle& /*file*/) {
    return {};
}

std::error_code SizeOf(const Handle& file, std::uint64_t& size) {
    LARGE_INTEGER length = {};
    const std::error_code error = ErrorUnless(::GetFileSizeEx(file.Get(), &length) != 0);
    size = static_cast<std::uint64_t>(length.QuadPart);
    return error;
}

/// The name cannot pass to another file: nobody who mistakes the file for a stale one can remove it while it
/// is open.
std::error_code CheckName(const Handle& /*file*/, const std::string& path) {
    return IsTaken(path) ? std::error_code() : std::make_error_code(std::errc::no_such_file_or_directory);
}

std::error_code Synchronize(const Handle& file) {
    return ErrorUnless(::FlushFileBuffers(file.Get()) != 0);
}

/// Not needed: renaming waits until the new name is on the disk.
std::error_code SynchronizeFolder(const std::string& /*folder*/) {
    return {};
}

void Remove(const std::string& path) {
    ::DeleteFileW(ToSystem(path).c_str());
}

}  // namespace file_system
