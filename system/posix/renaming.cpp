// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "system/file_system.h"
#include "system/posix/file_status.h"
#include "system/retry_on_interrupt.h"

namespace file_system {

namespace {

#if defined(RENAME_NOREPLACE)
std::error_code RenameInOneStep(const std::string& from, const std::string& to) {
    return ErrorOf(RetryOnInterrupt(
        [&] { return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE); }));
}
#elif defined(RENAME_EXCL)
std::error_code RenameInOneStep(const std::string& from, const std::string& to) {
    return ErrorOf(RetryOnInterrupt([&] { return ::renamex_np(from.c_str(), to.c_str(), RENAME_EXCL); }));
}
#else
std::error_code RenameInOneStep(const std::string& /*from*/, const std::string& /*to*/) {
    return std::make_error_code(std::errc::function_not_supported);
}
#endif

/// Whether both names belong to the same file.
bool NameOneFile(const std::string& a, const std::string& b) {
    struct stat status_a = {};
    struct stat status_b = {};
    return !StatusOf(a, status_a) && !StatusOf(b, status_b) && status_a.st_dev == status_b.st_dev &&
           status_a.st_ino == status_b.st_ino;
}

/// On a network file system, the answer to a successful call may get lost, and its repetition then fails.
std::error_code Link(const std::string& from, const std::string& to) {
    const std::error_code error = ErrorOf(RetryOnInterrupt([&] { return ::link(from.c_str(), to.c_str()); }));
    return error == std::errc::file_exists && NameOneFile(from, to) ? std::error_code() : error;
}

/// Whether this is the answer of a file system that does not have the operation.
bool MeansUnknown(std::error_code error) {
    return error == std::errc::invalid_argument || error == std::errc::function_not_supported ||
           error == std::errc::not_supported;
}

bool MeansNoLinks(std::error_code error) {
    return MeansUnknown(error) || error == std::errc::operation_not_permitted ||
           error == std::errc::permission_denied || error == std::errc::too_many_links;
}

}  // namespace

std::error_code Rename(const std::string& from, const std::string& to) {
    return ErrorOf(RetryOnInterrupt([&] { return std::rename(from.c_str(), to.c_str()); }));
}

std::error_code RenameToFree(const std::string& from, const std::string& to) {
    if (const std::error_code error = RenameInOneStep(from, to); !MeansUnknown(error)) {
        return error;
    }
    const std::error_code error = Link(from, to);
    if (!error) {
        Remove(from);
    }
    if (!MeansNoLinks(error)) {
        return error;
    }
    auto existing = Kind::kNothing;
    if (const std::error_code unknown = KindOf(to, existing)) {
        return unknown;
    }
    return existing == Kind::kNothing ? Rename(from, to) : std::make_error_code(std::errc::file_exists);
}

}  // namespace file_system
