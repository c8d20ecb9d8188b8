// SPDX-License-Identifier: MIT
#include "system/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "system/file_system.h"
#include "system/system_error.h"
#include "system/retry_on_interrupt.h"

FileLock::~FileLock() {
    if (file_ >= 0) {
        ::close(static_cast<int>(file_));
    }
}

/// A file system without locks has none to wait for.
int FileLock::Take(const std::string& path) {
    constexpr mode_t owners = 0600;
    constexpr int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC;
    const int descriptor = RetryOnInterrupt([&] { return ::open(path.c_str(), flags, owners); });
    if (descriptor < 0) {
        return system_error::Last().value();
    }
    const bool held = RetryOnInterrupt([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); }) == 0;
    const int error = held ? 0 : system_error::Last().value();
    if (error != 0 && error != ENOSYS && error != ENOTSUP && error != EINVAL) {
        ::close(descriptor);
        return error;
    }
    file_ = descriptor;
    return 0;
}

int FileLock::Descriptor() const {
    return static_cast<int>(file_);
}
