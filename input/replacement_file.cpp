// SPDX-License-Identifier: MIT
#include "input/replacement_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "input/interrupted_call.h"

namespace {

namespace fs = std::filesystem;

constexpr mode_t kDefaultMode = 0666;  // less the user's mask

/// The error number of the call that failed last; never 0.
int LastError() {
    return errno != 0 ? errno : EIO;
}

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

/// Where the chain of symbolic links from `path` ends, whether or not a file stands there.
int FollowLinks(const std::string& path, fs::path& target) {
    constexpr int longest_chain = 40;  // as on Linux
    target = path;
    for (int i = 0; i < longest_chain; ++i) {
        struct stat status = {};
        const int unknown = LinkStatusOf(target.string(), status);
        if (unknown != 0 || !S_ISLNK(status.st_mode)) {
            return unknown == ENOENT ? 0 : unknown;
        }
        std::error_code error;
        const fs::path next = fs::read_symlink(target, error);
        if (error) {
            return error.value();
        }
        target = target.parent_path() / next;  // an absolute `next` stands alone
    }
    return ELOOP;
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

void Remove(const std::string& path) {
    (void)RepeatInterrupted([&] { return ::unlink(path.c_str()); });
}

/// Removes what a killed run left at `path`, if that is what stands there. Returns whether it did.
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
    ::close(descriptor);
    return stale;
}

/// Makes the file `path`. Returns its descriptor or -1 with errno.
int CreateNew(const std::string& path) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    return RepeatInterrupted([&] { return ::open(path.c_str(), flags, kDefaultMode); });
}

/// Makes and locks the file `path`. Returns its descriptor, or -1 with errno; EEXIST when something stands
/// there that another run is writing, or that is none of ours. Without locks on the file system, what a
/// killed run left stays.
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
    ::close(descriptor);
    errno = error;
    return -1;
}

std::string PartName(const std::string& folder, int number) {
    return folder + ".velmarcon-" + std::to_string(number) + ".part";
}

/// Removes what killed runs left under the names from number `first` on, up to the first that none left.
void RemoveStaleParts(const std::string& folder, int first) {
    while (RemoveStale(PartName(folder, first))) {
        ++first;
    }
}

}  // namespace

ReplacementFile::~ReplacementFile() {
    if (!part_path_.empty()) {
        stream_.close();
        Remove(part_path_);
    }
    if (lock_ >= 0) {
        ::close(lock_);
    }
}

int ReplacementFile::Open(const std::string& path) {
    fs::path target;
    if (const int error = FollowLinks(path, target); error != 0) {
        return error;
    }
    final_path_ = target.string();
    struct stat existing = {};
    const int unknown = StatusOf(final_path_, existing);
    if (unknown != 0 && unknown != ENOENT) {
        return unknown;
    }
    const bool exists = unknown == 0;
    if (exists && !S_ISREG(existing.st_mode)) {
        return S_ISDIR(existing.st_mode) ? EISDIR : EEXIST;
    }
    if (exists && RepeatInterrupted([&] { return ::access(final_path_.c_str(), W_OK); }) != 0) {
        return LastError();
    }
    const std::string folder = target.has_parent_path() ? target.parent_path().string() + "/" : "";
    if (const int error = CreatePart(folder); error != 0) {
        return error;
    }
    return OpenStream();
}

int ReplacementFile::OpenStream() {
    return RepeatInterrupted([&] {
               errno = 0;
               // Not truncated: the part is new, and some file systems write a truncated file to disk as soon
               // as it is closed.
               stream_.open(part_path_, std::ios::binary | std::ios::in);
               return stream_.is_open() ? 0 : -1;
           }) == 0
               ? 0
               : LastError();
}

bool ReplacementFile::Good() {
    if (!stream_ && error_ == 0) {
        error_ = LastError();
    }
    return error_ == 0;
}

/// The part's name does not depend on the final one, so that it never is too long. A name that can't be used,
/// because another run or another user does or because something else stands there, is passed over.
int ReplacementFile::CreatePart(const std::string& folder) {
    constexpr int most_names = 100;
    int first_error = 0;
    for (int i = 0; i < most_names; ++i) {
        std::string part = PartName(folder, i);
        lock_ = CreateLocked(part);
        if (lock_ >= 0) {
            part_path_ =
                std::move(part);  // without an allocation, which could fail and leave the file behind
            RemoveStaleParts(folder, i + 1);
            return 0;
        }
        first_error = first_error != 0 ? first_error : LastError();
        struct stat in_the_way = {};
        if (LinkStatusOf(part, in_the_way) != 0) {
            break;  // nothing stands there: it is the folder that can't be written
        }
    }
    return first_error;
}

int ReplacementFile::Commit(std::uint64_t size) {
    errno = 0;
    stream_.close();
    if (!Good()) {
        return error_;
    }
    struct stat written = {};
    if (const int error = StatusOf(lock_, written); error != 0) {
        return error;
    }
    if (static_cast<std::uint64_t>(written.st_size) != size) {
        return EIO;
    }
    if (const int error = PrepareToReplace(); error != 0) {
        return error;
    }
    if (RepeatInterrupted([&] { return std::rename(part_path_.c_str(), final_path_.c_str()); }) != 0) {
        return LastError();
    }
    part_path_.clear();
    return 0;
}

/// A new file may wait for the system to write it; one that replaces another takes over its owner and mode
/// and must be on disk before that one goes.
int ReplacementFile::PrepareToReplace() {
    struct stat existing = {};
    if (const int error = StatusOf(final_path_, existing); error != 0) {
        return error == ENOENT ? 0 : error;
    }
    // A refusal leaves the owner or the mode of a new file.
    (void)RepeatInterrupted([&] { return ::fchown(lock_, existing.st_uid, existing.st_gid); });
    (void)RepeatInterrupted([&] { return ::fchmod(lock_, existing.st_mode & ALLPERMS); });
    return RepeatInterrupted([&] { return ::fsync(lock_); }) == 0 ? 0 : LastError();
}
