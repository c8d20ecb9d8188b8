// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "input/file_calls.h"
#include "input/interrupted_call.h"

namespace file_calls {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kDefaultMode = 0666;  // less the user's mask

/// The status of the file at `path`. Returns 0 or the system's error number, ENOENT when there is none.
int StatusOf(const std::string& path, struct stat& status) {
    return RepeatInterrupted([&] { return ::stat(path.c_str(), &status); }) == 0 ? 0 : LastError();
}

/// The same; of a symbolic link, its own.
int LinkStatusOf(const std::string& path, struct stat& status) {
    return RepeatInterrupted([&] { return ::lstat(path.c_str(), &status); }) == 0 ? 0 : LastError();
}

int StatusOf(int descriptor, struct stat& status) {
    return RepeatInterrupted([&] { return ::fstat(descriptor, &status); }) == 0 ? 0 : LastError();
}

/// Returns 0 when the open file is the one that stands at `path`, EEXIST when it is not, or the system's
/// error number when that can't be told.
int CompareWithNamed(int descriptor, const std::string& path) {
    struct stat open_file = {};
    struct stat named_file = {};
    if (const int error = StatusOf(descriptor, open_file); error != 0) {
        return error;
    }
    if (const int error = StatusOf(path, named_file); error != 0) {
        return error == ENOENT ? EEXIST : error;
    }
    return open_file.st_dev == named_file.st_dev && open_file.st_ino == named_file.st_ino ? 0 : EEXIST;
}

/// Returns 0 or an error number: EWOULDBLOCK when another run holds the lock.
int Lock(int descriptor) {
    return RepeatInterrupted([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0 ? 0 : LastError();
}

/// Makes the file `path`. Returns its descriptor or -1 with errno.
int CreateNew(const std::string& path) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    return RepeatInterrupted([&] { return ::open(path.c_str(), flags, kDefaultMode); });
}

/// Waits until the open file is on disk. Returns 0 or -1 with errno.
int Synchronize(int descriptor) {
#if defined(F_FULLFSYNC)
    // macOS: fsync hands the file to the drive, which may keep it in its memory. Not every drive knows
    // better.
    if (::fcntl(descriptor, F_FULLFSYNC) == 0) {
        return 0;
    }
#endif
    return ::fsync(descriptor);
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
        const int unknown = LinkStatusOf(end.string(), status);
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

fs::path RealName(const std::string& path, std::error_code& error) {
    return fs::canonical(path, error);
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
    } else if (S_ISDIR(status.st_mode)) {
        kind = Kind::kFolder;
    }
    return 0;
}

int CheckWritable(const std::string& path) {
    return RepeatInterrupted([&] { return ::access(path.c_str(), W_OK); }) == 0 ? 0 : LastError();
}

std::string FolderOf(const std::string& path) {
    const fs::path file = path;
    return file.has_parent_path() ? file.parent_path().string() + "/" : "";
}

bool IsTaken(const std::string& path) {
    struct stat in_the_way = {};
    return LinkStatusOf(path, in_the_way) == 0;
}

bool RemoveStale(const std::string& path) {
    constexpr int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const int descriptor = RepeatInterrupted([&] { return ::open(path.c_str(), flags); });
    if (descriptor < 0) {
        return false;
    }
    struct stat status = {};
    const bool plain = StatusOf(descriptor, status) == 0 && S_ISREG(status.st_mode);
    const bool stale = plain && Lock(descriptor) == 0 && CompareWithNamed(descriptor, path) == 0;
    if (stale) {
        Remove(path);
    }
    Close(descriptor);
    return stale;
}

int CreateLocked(const std::string& path) {
    int descriptor = CreateNew(path);
    if (descriptor < 0 && errno == EEXIST) {
        RemoveStale(path);
        descriptor = CreateNew(path);
    }
    if (descriptor < 0) {
        return -1;
    }
    // Before the lock is held another run may have taken the new file for a stale one.
    const bool theirs = Lock(descriptor) == EWOULDBLOCK;
    const int error = theirs ? EEXIST : CompareWithNamed(descriptor, path);
    if (error == 0) {
        return descriptor;
    }
    if (error != EEXIST) {
        Remove(path);
    }
    Close(descriptor);
    errno = error;
    return -1;
}

int SizeOf(int descriptor, std::uint64_t& size) {
    struct stat status = {};
    const int error = StatusOf(descriptor, status);
    size = static_cast<std::uint64_t>(status.st_size);
    return error;
}

int PrepareToReplace(int descriptor, const std::string& path) {
    struct stat existing = {};
    if (const int error = StatusOf(path, existing); error != 0) {
        return error == ENOENT ? 0 : error;
    }
    // A refusal leaves the owner or the mode of a new file.
    (void)RepeatInterrupted([&] { return ::fchown(descriptor, existing.st_uid, existing.st_gid); });
    (void)RepeatInterrupted([&] { return ::fchmod(descriptor, existing.st_mode & ALLPERMS); });
    return RepeatInterrupted([&] { return Synchronize(descriptor); }) == 0 ? 0 : LastError();
}

int Rename(const std::string& from, const std::string& to) {
    return RepeatInterrupted([&] { return std::rename(from.c_str(), to.c_str()); }) == 0 ? 0 : LastError();
}

void Remove(const std::string& path) {
    (void)RepeatInterrupted([&] { return ::unlink(path.c_str()); });
}

void Close(int descriptor) {
    ::close(descriptor);
}

}  // namespace file_calls
