// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_DESCRIPTOR_LIMIT_H
#define VELMARCON_TESTS_SUPPORT_DESCRIPTOR_LIMIT_H

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

namespace support {

/// Whether a test may forbid opening any file. It must not under the sanitizers: they check an object's type
/// through a pipe and end the process if they can't make one.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kNoFilesCanBeLeft = false;
#else
constexpr bool kNoFilesCanBeLeft = true;
#endif

/// Limits this process to opening `files` further files, for the lifetime of the object; the next one fails
/// with EMFILE.
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
