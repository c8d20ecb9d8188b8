// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_FILE_SIZE_LIMIT_H
#define VELMARCON_TESTS_SUPPORT_FILE_SIZE_LIMIT_H

#include <sys/resource.h>

#include <algorithm>
#include <csignal>

namespace support {

/// Limits the files that this process writes to `bytes`, for the lifetime of the object: the closest thing to
/// a full disk.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit = {std::min(bytes, before_.rlim_max), before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        (void)std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    FileSizeLimit(FileSizeLimit&&) = delete;
    FileSizeLimit& operator=(FileSizeLimit&&) = delete;

  private:
    rlimit before_ = {};
    void (*handler_)(int);
};

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_FILE_SIZE_LIMIT_H
