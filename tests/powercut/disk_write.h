// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_DISK_WRITE_H
#define VELMARCON_TESTS_POWERCUT_DISK_WRITE_H

#include <cstdint>
#include <vector>

namespace powercut {

using Bytes = std::vector<std::uint8_t>;

/// A request of a file system to its disk: to write these bytes or, with `is_flush`, to make all earlier
/// writes survive a power cut.
struct DiskWrite {
    std::uint64_t offset = 0;
    Bytes bytes = {};
    bool is_flush = false;
    bool survives = false;  ///< whether the write had to reach the medium, not only the disk's cache, before
                            ///< it was answered
};

using WriteLog = std::vector<DiskWrite>;

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_DISK_WRITE_H
