// SPDX-License-Identifier: MIT
#include "system/file_system.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "system/posix/file_status.h"
#include "system/retry_on_interrupt.h"

namespace file_system {

namespace {

namespace fs = std::filesystem;

/// Returns operation_would_block if another run holds the lock.
std::error_code Lock(const Handle& file) {
    return ErrorOf(RetryOnInterrupt([&] { return ::flock(file.Get(), LOCK_EX | LOCK_NB); }));
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

/// Compares size and time, too, because some file systems give a file a new number at every query.
bool SameFile(const struct stat& a, const struct stat& b) {
    return S_ISREG(a.st_mode) && S_ISREG(b.st_mode) && a.st_dev == b.st_dev &&
           (a.st_ino == b.st_ino || (a.st_size == b.st_size && SameTime(ModifiedTime(a), ModifiedTime(b))));
}

/// 0 also if the file's time is in the future: the clock of a server may be fast, and that of a file finer.
std::int64_t SecondsSinceWrite(const struct stat& status) {
    return std::max(std::int64_t{std::time(nullptr)} - status.st_mtime, std::int64_t{0});
}

bool IsAbandoned(const Handle& file, const std::string& path, std::int64_t least_age) {
    struct stat status = {};
    return !StatusOf(file, status) && S_ISREG(status.st_mode) && SecondsSinceWrite(status) >= least_age &&
           Lock(file) != std::errc::operation_would_block && !CheckName(file, path);
}

/// A missing file is not an error here.
std::error_code UnlessMissing(std::error_code unknown) {
    return unknown == std::errc::no_such_file_or_directory ? std::error_code() : unknown;
}

}  // namespace

std::error_code FollowLinks(const std::string& path, std::string& target) {
    constexpr int longest_chain = 40;  // as on Linux
    fs::path end = path;
    for (int i = 0; i < longest_chain; ++i) {
        struct stat status = {};
        const std::error_code unknown = StatusOf(end.string(), status);
        if (unknown || !S_ISLNK(status.st_mode)) {
            target = end.string();
            return UnlessMissing(unknown);
        }
        std::error_code error;
        const fs::path next = fs::read_symlink(end, error);
        if (error) {
            return error;
        }
        end = end.parent_path() / next;  // an absolute `next` replaces the whole path
    }
    return std::make_error_code(std::errc::too_many_symbolic_link_levels);
}

std::error_code KindOf(const std::string& path, Kind& kind) {
    struct stat status = {};
    kind = Kind::kNothing;
    if (const std::error_code unknown = StatusOf(path, status)) {
        return UnlessMissing(unknown);
    }
    kind = Kind::kOther;
    if (S_ISREG(status.st_mode)) {
        kind = Kind::kPlainFile;
    } else if (S_ISLNK(status.st_mode)) {
        kind = Kind::kLink;
    } else if (S_ISDIR(status.st_mode)) {
        kind = Kind::kFolder;
    }
    return {};
}

std::error_code CheckWritable(const std::string& path) {
    return ErrorOf(RetryOnInterrupt([&] { return ::access(path.c_str(), W_OK); }));
}

bool IsTaken(const std::string& path) {
    struct stat in_the_way = {};
    return !StatusOf(path, in_the_way);
}

std::error_code CreateNew(const std::string& path, fs::perms permissions, Handle& file) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    const auto mode = static_cast<mode_t>(permissions);
    file = Handle(RetryOnInterrupt([&] { return ::open(path.c_str(), flags, mode); }));
    if (!file.IsOpen()) {
        return system_error::Last();
    }
    (void)Lock(file);  // may fail: nobody else knows the name yet, and some file systems have no locks
    return {};
}

void RemoveAbandoned(const std::string& path, std::int64_t least_age) {
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const Handle file(RetryOnInterrupt([&] { return ::open(path.c_str(), flags); }));
    if (file.IsOpen() && IsAbandoned(file, path, least_age)) {
        Remove(path);
    }
}

std::error_code Write(const Handle& file, std::span<const char> bytes) {
    while (!bytes.empty()) {
        const auto written =
            RetryOnInterrupt([&] { return ::write(file.Get(), bytes.data(), bytes.size()); });
        if (written < 0) {
            return system_error::Last();
        }
        if (written == 0) {
            return std::make_error_code(std::errc::io_error);  // a retry would loop for ever
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return {};
}

/// A network file system writes when a descriptor is closed. This closes a copy, so that the file stays open
/// and locked.
std::error_code Flush(const Handle& file) {
    const int copy = RetryOnInterrupt([&] { return ::fcntl(file.Get(), F_DUPFD_CLOEXEC, 0); });
    return copy >= 0 ? ErrorOf(::close(copy)) : system_error::Last();
}

std::error_code SizeOf(const Handle& file, std::uint64_t& size) {
    struct stat status = {};
    const std::error_code error = StatusOf(file, status);
    size = static_cast<std::uint64_t>(status.st_size);
    return error;
}

std::error_code CheckName(const Handle& file, const std::string& path) {
    struct stat open_file = {};
    struct stat named_file = {};
    if (const std::error_code error = StatusOf(file, open_file)) {
        return error;
    }
    if (const std::error_code error = StatusOf(path, named_file)) {
        return error;
    }
    return SameFile(open_file, named_file) ? std::error_code()
                                           : std::error_code(ESTALE, std::generic_category());
}

std::error_code Synchronize(const Handle& file) {
#if defined(F_FULLFSYNC)
    // On macOS, fsync only hands the data to the drive, which may keep it in its cache. Not every drive
    // supports the stronger request.
    if (::fcntl(file.Get(), F_FULLFSYNC) == 0) {
        return {};
    }
#endif
    return ErrorOf(RetryOnInterrupt([&] { return ::fsync(file.Get()); }));
}

std::error_code SynchronizeFolder(const std::string& folder) {
    const char* const path = folder.empty() ? "." : folder.c_str();
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    const Handle names(RetryOnInterrupt([&] { return ::open(path, flags); }));
    if (!names.IsOpen()) {
        return system_error::Last();
    }
    const std::error_code error = ErrorOf(RetryOnInterrupt([&] { return ::fsync(names.Get()); }));
    return error == std::errc::invalid_argument ? std::error_code()
                                                : error;  // some file systems cannot synchronize a folder
}

void Remove(const std::string& path) {
    (void)RetryOnInterrupt([&] { return ::unlink(path.c_str()); });
}

}  // namespace file_system
