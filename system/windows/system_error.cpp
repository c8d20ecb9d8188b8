// SPDX-License-Identifier: MIT
#include "system/system_error.h"

#include <windows.h>

#include <cstring>

namespace system_error {

namespace {

/// The closest error of <cerrno>. device_or_resource_busy means that another program has the file open and
/// does not share it.
std::errc FromWindows(DWORD error) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
            return std::errc::no_such_file_or_directory;
        case ERROR_ACCESS_DENIED:
        case ERROR_CANNOT_MAKE:
            return std::errc::permission_denied;
        case ERROR_WRITE_PROTECT:
            return std::errc::read_only_file_system;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
            return std::errc::device_or_resource_busy;
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return std::errc::file_exists;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return std::errc::no_space_on_device;
        case ERROR_FILE_TOO_LARGE:
            return std::errc::file_too_large;
        case ERROR_FILENAME_EXCED_RANGE:
            return std::errc::filename_too_long;
        case ERROR_CANT_RESOLVE_FILENAME:
            return std::errc::too_many_symbolic_link_levels;
        case ERROR_TOO_MANY_OPEN_FILES:
            return std::errc::too_many_files_open;
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_OUTOFMEMORY:
            return std::errc::not_enough_memory;
        default:
            return std::errc::io_error;
    }
}

}  // namespace

std::error_code Last() {
    return std::make_error_code(FromWindows(::GetLastError()));
}

const char* Text(std::error_code error) {
    return error == std::errc::device_or_resource_busy
               ? "The file is in use by another program"
               : std::strerror(error.default_error_condition().value());
}

}  // namespace system_error
