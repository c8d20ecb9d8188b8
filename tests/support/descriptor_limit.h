// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_DESCRIPTOR_LIMIT_H
#define VELMARCON_TESTS_SUPPORT_DESCRIPTOR_LIMIT_H

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

namespace support {

/// Whether a test may leave no file at all to be opened. The sanitizers look at an object's type through a
/// pipe, and end the process when they can't make one.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kNoFilesCanBeLeft = false;
#else
constexpr bool kNoFilesCanBeLeft = true;
#endif

/// While it lives, this process can open no more than `files` further files: the next fails with EMFILE.
class DescriptorLimit {
  public:
    explicit DescriptorLimit(unsigned int files) {
        const int lowest_free = ::open("/", O_RDONLY | O_CLOEXEC);
        ::close(lowest_free);
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit limit = {std::min(static_cast<rlim_t>(lowest_free) + files, before_.rlim_max),
                              before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &before_); }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    DescriptorLimit(DescriptorLimit&&) = delete;
    DescriptorLimit& operator=(DescriptorLimit&&) = delete;

  private:
    rlimit before_ = {};
};

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_DESCRIPTOR_LIMIT_H
