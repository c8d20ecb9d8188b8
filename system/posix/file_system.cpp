// SPDX-License-Identifier: MIT
#include "system/file_system.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "system/posix/file_status.h"
#include "system/retry_on_interrupt.h"

namespace file_system {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kUsualMode = 0666;  // less the user's mask
constexpr mode_t kOwnersMode = 0600;

/// Returns 0 or an error number: EWOULDBLOCK when another run holds the lock.
int Lock(int descriptor) {
    return RetryOnInterrupt([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0 ? 0 : LastError();
}

bool SameTime(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

#if defined(__APPLE__)
const timespec& ModifiedTime(const struct stat& status) {
    return status.st_mtimespec;
}
#else
const timespec& ModifiedTime(const struct stat& status) {
    return status.st_mtim;
}
#endif

/// Some file systems number a file anew each time they are asked.
bool SameFile(const struct stat& a, const struct stat& b) {
    return S_ISREG(a.st_mode) && S_ISREG(b.st_mode) && a.st_dev == b.st_dev &&
           (a.st_ino == b.st_ino || (a.st_size == b.st_size && SameTime(ModifiedTime(a), ModifiedTime(b))));
}

bool IsAbandoned(int descriptor, const std::string& path, std::int64_t least_age) {
    struct stat status = {};
    return StatusOf(descriptor, status) == 0 && S_ISREG(status.st_mode) &&
           std::int64_t{std::time(nullptr)} - status.st_mtime >= least_age &&
           Lock(descriptor) != EWOULDBLOCK && CheckName(descriptor, path) == 0;
}

}  // namespace

const char* ErrorText(int error) {
    return std::strerror(error);
}

int FollowLinks(const std::string& path, std::string& target) {
    constexpr int longest_chain = 40;  // as on Linux
    fs::path end = path;
    for (int i = 0; i < longest_chain; ++i) {
        struct stat status = {};
        const int unknown = StatusOf(end.string(), status);
        if (unknown != 0 || !S_ISLNK(status.st_mode)) {
            target = end.string();
            return unknown == ENOENT ? 0 : unknown;
        }
        std::error_code error;
        const fs::path next = fs::read_symlink(end, error);
        if (error) {
            return error.value();
        }
        end = end.parent_path() / next;  // an absolute `next` stands alone
    }
    return ELOOP;
}

int KindOf(const std::string& path, Kind& kind) {
    struct stat status = {};
    kind = Kind::kNothing;
    if (const int unknown = StatusOf(path, status); unknown != 0) {
        return unknown == ENOENT ? 0 : unknown;
    }
    kind = Kind::kOther;
    if (S_ISREG(status.st_mode)) {
        kind = Kind::kPlainFile;
    } else if (S_ISLNK(status.st_mode)) {
        kind = Kind::kLink;
    } else if (S_ISDIR(status.st_mode)) {
        kind = Kind::kFolder;
    }
    return 0;
}

int CheckWritable(const std::string& path) {
    return RetryOnInterrupt([&] { return ::access(path.c_str(), W_OK); }) == 0 ? 0 : LastError();
}

std::string FolderOf(const std::string& path) {
    const fs::path file = path;
    return file.has_parent_path() ? file.parent_path().string() + "/" : "";
}

bool IsTaken(const std::string& path) {
    struct stat in_the_way = {};
    return StatusOf(path, in_the_way) == 0;
}

int CreateNew(const std::string& path, Readers readers) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    const mode_t mode = readers == Readers::kOwner ? kOwnersMode : kUsualMode;
    const int descriptor = RetryOnInterrupt([&] { return ::open(path.c_str(), flags, mode); });
    if (descriptor >= 0) {
        (void)Lock(descriptor);  // nobody else knows the name, and some file systems have no locks
    }
    return descriptor;
}

void RemoveAbandoned(const std::string& path, std::int64_t least_age) {
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int descriptor = RetryOnInterrupt([&] { return ::open(path.c_str(), flags); });
    if (descriptor < 0) {
        return;
    }
    if (IsAbandoned(descriptor, path, least_age)) {
        Remove(path);
    }
    Close(descriptor);
}

int Write(int descriptor, std::span<const char> bytes) {
    while (!bytes.empty()) {
        const auto written =
            RetryOnInterrupt([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
        if (written < 0) {
            return LastError();
        }
        if (written == 0) {
            return EIO;  // it would be so for ever
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return 0;
}

/// A file system in a network hears of it when a descriptor is closed; the file's own stays open, and with it
/// the lock.
int Flush(int descriptor) {
    const int copy = RetryOnInterrupt([&] { return ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0); });
    return copy >= 0 && ::close(copy) == 0 ? 0 : LastError();
}

int SizeOf(int descriptor, std::uint64_t& size) {
    struct stat status = {};
    const int error = StatusOf(descriptor, status);
    size = static_cast<std::uint64_t>(status.st_size);
    return error;
}

int CheckName(int descriptor, const std::string& path) {
    struct stat open_file = {};
    struct stat named_file = {};
    if (const int error = StatusOf(descriptor, open_file); error != 0) {
        return error;
    }
    if (const int error = StatusOf(path, named_file); error != 0) {
        return error;
    }
    return SameFile(open_file, named_file) ? 0 : ESTALE;
}

int Synchronize(int descriptor) {
#if defined(F_FULLFSYNC)
    // macOS: fsync hands the file to the drive, which may keep it in its memory. Not every drive knows
    // better.
    if (::fcntl(descriptor, F_FULLFSYNC) == 0) {
        return 0;
    }
#endif
    return RetryOnInterrupt([&] { return ::fsync(descriptor); }) == 0 ? 0 : LastError();
}

void Remove(const std::string& path) {
    (void)RetryOnInterrupt([&] { return ::unlink(path.c_str()); });
}

void Close(int descriptor) {
    ::close(descriptor);
}

}  // namespace file_system
