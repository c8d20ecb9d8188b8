// SPDX-License-Identifier: MIT
#include "system/windows/windows_error.h"

#include <windows.h>

#include <cerrno>

int ErrnoOfLastWindowsError() {
    switch (::GetLastError()) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_INVALID_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
            return ENOENT;
        case ERROR_ACCESS_DENIED:
        case ERROR_CANNOT_MAKE:
            return EACCES;
        case ERROR_WRITE_PROTECT:
            return EROFS;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
            return EBUSY;
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return EEXIST;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return ENOSPC;
        case ERROR_FILE_TOO_LARGE:
            return EFBIG;
        case ERROR_FILENAME_EXCED_RANGE:
            return ENAMETOOLONG;
        case ERROR_CANT_RESOLVE_FILENAME:
            return ELOOP;
        case ERROR_TOO_MANY_OPEN_FILES:
            return EMFILE;
        case ERROR_NOT_ENOUGH_MEMORY:
        case ERROR_OUTOFMEMORY:
            return ENOMEM;
        default:
            return EIO;
    }
}
