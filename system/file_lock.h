// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_FILE_LOCK_H
#define VELMARCON_SYSTEM_FILE_LOCK_H

#include <cstdint>
#include <string>
#include <system_error>

/// A file, or on POSIX a folder, that one run at a time may hold, or several that do not mind each other. On
/// POSIX a program that the run starts holds it, too, when it is
/// given the descriptor (see ChildStart): it is free again when all of them have ended.
class FileLock {
  public:
    enum class Hold { kAlone, kTogether };

    FileLock() = default;
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    FileLock(FileLock&&) = delete;
    FileLock& operator=(FileLock&&) = delete;

    /// Makes the file at `path`, no link, unless it or a folder is there, and takes the lock. Returns
    /// operation_would_block when others hold it and would mind. May be called again after a failure.
    [[nodiscard]] std::error_code Take(const std::string& path, Hold hold = Hold::kAlone);

    /// What a child keeps open to hold the lock as well; -1 on Windows.
    int Descriptor() const;

  private:
    std::int64_t file_ = -1;  ///< descriptor (POSIX) or handle (Windows)
};

#endif  // VELMARCON_SYSTEM_FILE_LOCK_H
