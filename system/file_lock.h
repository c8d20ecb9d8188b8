// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_FILE_LOCK_H
#define VELMARCON_SYSTEM_FILE_LOCK_H

#include <cstdint>
#include <string>

/// A file that one run at a time may hold. On POSIX a program that the run starts holds it, too, when it is
/// given the descriptor (see ChildStart): it is free again when all of them have ended.
class FileLock {
  public:
    FileLock() = default;
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    FileLock(FileLock&&) = delete;
    FileLock& operator=(FileLock&&) = delete;

    /// Makes the file at `path`, no link, unless it is there, and takes the lock. Returns 0, EWOULDBLOCK when
    /// another one holds it, or the system's error number. May be called again after a failure.
    [[nodiscard]] int Take(const std::string& path);

    /// What a child keeps open to hold the lock as well; -1 on Windows.
    int Descriptor() const;

  private:
    std::int64_t file_ = -1;  ///< descriptor (POSIX) or handle (Windows)
};

#endif  // VELMARCON_SYSTEM_FILE_LOCK_H
