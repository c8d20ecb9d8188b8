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

namespace {

namespace fs = std::filesystem;

constexpr mode_t kDefaultMode = 0666;  // less the user's mask

/// The error number of the call that failed last; never 0.
int LastError() {
    return errno != 0 ? errno : EIO;
}

/// Where the chain of symbolic links from `path` ends, whether or not a file stands there.
int FollowLinks(const std::string& path, fs::path& target) {
    constexpr int longest_chain = 40;  // as on Linux
    target = path;
    std::error_code error;
    for (int i = 0; i < longest_chain; ++i) {
        if (!fs::is_symlink(fs::symlink_status(target, error))) {
            return 0;
        }
        const fs::path next = fs::read_symlink(target, error);
        if (error) {
            return error.value();
        }
        target = target.parent_path() / next;  // an absolute `next` stands alone
    }
    return ELOOP;
}

bool SameFile(int descriptor, const std::string& path) {
    struct stat open_file = {};
    struct stat named_file = {};
    return ::fstat(descriptor, &open_file) == 0 && ::stat(path.c_str(), &named_file) == 0 &&
           open_file.st_dev == named_file.st_dev && open_file.st_ino == named_file.st_ino;
}

/// Removes what a killed run left at `path`, if that is what stands there.
void RemoveStale(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0) {
        return;
    }
    struct stat status = {};
    const bool plain = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    if (plain && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && SameFile(descriptor, path)) {
        ::unlink(path.c_str());
    }
    ::close(descriptor);
}

/// Makes and locks the file `path`. Returns its descriptor, or -1 with errno; EEXIST when something stands
/// there that another run is writing, or that is none of ours. Without locks on the file system, what a
/// killed run left stays.
int CreateLocked(const std::string& path) {
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC;
    int descriptor = ::open(path.c_str(), flags, kDefaultMode);
    if (descriptor < 0 && errno == EEXIST) {
        RemoveStale(path);
        descriptor = ::open(path.c_str(), flags, kDefaultMode);
    }
    if (descriptor < 0) {
        return -1;
    }
    // Before the lock is held another run may have taken the new file for a stale one.
    const bool locked = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    if (!locked || !SameFile(descriptor, path)) {
        ::close(descriptor);
        errno = EEXIST;
        return -1;
    }
    return descriptor;
}

}  // namespace

ReplacementFile::~ReplacementFile() {
    if (!part_path_.empty()) {
        stream_.close();
        std::remove(part_path_.c_str());
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
    const bool exists = ::stat(final_path_.c_str(), &existing) == 0;
    if (exists && !S_ISREG(existing.st_mode)) {
        return S_ISDIR(existing.st_mode) ? EISDIR : EEXIST;
    }
    if (exists && ::access(final_path_.c_str(), W_OK) != 0) {
        return LastError();
    }
    const std::string folder = target.has_parent_path() ? target.parent_path().string() + "/" : "";
    if (const int error = CreatePart(folder); error != 0) {
        return error;
    }
    errno = 0;
    // Not truncated: the part is new, and some file systems write a truncated file to disk as soon as it is
    // closed.
    stream_.open(part_path_, std::ios::binary | std::ios::in);
    return stream_.is_open() ? 0 : LastError();
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
        std::string part = folder + ".velmarcon-" + std::to_string(i) + ".part";
        lock_ = CreateLocked(part);
        if (lock_ >= 0) {
            part_path_ = std::move(part);  // without an allocation, which could fail and leave the file behind
            return 0;
        }
        first_error = first_error != 0 ? first_error : LastError();
        struct stat in_the_way = {};
        if (::lstat(part.c_str(), &in_the_way) != 0) {
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
    if (::fstat(lock_, &written) != 0) {
        return LastError();
    }
    if (static_cast<std::uint64_t>(written.st_size) != size) {
        return EIO;
    }
    if (const int error = PrepareToReplace(); error != 0) {
        return error;
    }
    if (std::rename(part_path_.c_str(), final_path_.c_str()) != 0) {
        return LastError();
    }
    part_path_.clear();
    return 0;
}

/// A new file may wait for the system to write it; one that replaces another takes over its owner and mode
/// and must be on disk before that one goes.
int ReplacementFile::PrepareToReplace() {
    struct stat existing = {};
    if (::stat(final_path_.c_str(), &existing) != 0) {
        return 0;
    }
    // A refusal leaves the owner or the mode of a new file.
    [[maybe_unused]] const int owner_refused = ::fchown(lock_, existing.st_uid, existing.st_gid);
    [[maybe_unused]] const int mode_refused = ::fchmod(lock_, existing.st_mode & ALLPERMS);
    return ::fsync(lock_) == 0 ? 0 : LastError();
}
