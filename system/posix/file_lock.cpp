// SPDX-License-Identifier: MIT
#include "system/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "system/file_system.h"
#include "system/handle.h"
#include "system/retry_on_interrupt.h"
#include "system/system_error.h"

namespace {

Handle Open(const std::string& path) {
    constexpr mode_t owners = 0600;
    constexpr int common = O_NOFOLLOW | O_CLOEXEC;
    auto kind = file_system::Kind::kNothing;
    const bool is_folder = !file_system::KindOf(path, kind) && kind == file_system::Kind::kFolder;
    const int flags = common | (is_folder ? O_RDONLY | O_DIRECTORY : O_RDWR | O_CREAT);
    return Handle(RetryOnInterrupt([&] { return ::open(path.c_str(), flags, owners); }));
}

/// A file system without locks, or without locks of folders, has none to wait for.
bool IsWithoutLocks(std::error_code error) {
    constexpr std::array answers = {std::errc::function_not_supported,  std::errc::not_supported,
                                    std::errc::operation_not_supported, std::errc::invalid_argument,
                                    std::errc::bad_file_descriptor,     std::errc::no_lock_available};
    return std::ranges::any_of(answers, [&](std::errc answer) { return error == answer; });
}

}  // namespace

FileLock::~FileLock() {
    if (file_ >= 0) {
        ::close(static_cast<int>(file_));
    }
}

std::error_code FileLock::Take(const std::string& path, Hold hold) {
    Handle file = Open(path);
    if (!file.IsOpen()) {
        return system_error::Last();
    }
    const int kind = hold == Hold::kAlone ? LOCK_EX : LOCK_SH;
    const bool held = RetryOnInterrupt([&] { return ::flock(file.Get(), kind | LOCK_NB); }) == 0;
    const std::error_code error = held ? std::error_code() : system_error::Last();
    if (error && !IsWithoutLocks(error)) {
        return error;
    }
    file_ = file.Release();
    return {};
}

int FileLock::Descriptor() const {
    return static_cast<int>(file_);
}
