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
int RenameInOneStep(const std::string& from, const std::string& to) {
    return RetryOnInterrupt([&] {
               return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
           }) == 0
               ? 0
               : LastError();
}
#elif defined(RENAME_EXCL)
int RenameInOneStep(const std::string& from, const std::string& to) {
    return RetryOnInterrupt([&] { return ::renamex_np(from.c_str(), to.c_str(), RENAME_EXCL); }) == 0
               ? 0
               : LastError();
}
#else
int RenameInOneStep(const std::string& /*from*/, const std::string& /*to*/) {
    return ENOSYS;
}
#endif

/// Whether both are names of one file.
bool NameOneFile(const std::string& a, const std::string& b) {
    struct stat status_a = {};
    struct stat status_b = {};
    return StatusOf(a, status_a) == 0 && StatusOf(b, status_b) == 0 && status_a.st_dev == status_b.st_dev &&
           status_a.st_ino == status_b.st_ino;
}

/// Over a network the answer to a call that was made may get lost; the second one then fails.
int Link(const std::string& from, const std::string& to) {
    if (RetryOnInterrupt([&] { return ::link(from.c_str(), to.c_str()); }) == 0) {
        return 0;
    }
    const int error = LastError();
    return error == EEXIST && NameOneFile(from, to) ? 0 : error;
}

/// Whether a file system without the operation answers so.
bool MeansUnknown(int error) {
    return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

bool MeansNoLinks(int error) {
    return MeansUnknown(error) || error == EPERM || error == EACCES || error == EMLINK;
}

}  // namespace

int Rename(const std::string& from, const std::string& to) {
    return RetryOnInterrupt([&] { return std::rename(from.c_str(), to.c_str()); }) == 0 ? 0 : LastError();
}

int RenameToFree(const std::string& from, const std::string& to) {
    if (const int error = RenameInOneStep(from, to); !MeansUnknown(error)) {
        return error;
    }
    const int error = Link(from, to);
    if (error == 0) {
        Remove(from);
    }
    if (!MeansNoLinks(error)) {
        return error;
    }
    auto existing = Kind::kNothing;
    if (const int unknown = KindOf(to, existing); unknown != 0) {
        return unknown;
    }
    return existing == Kind::kNothing ? Rename(from, to) : EEXIST;
}

}  // namespace file_system
