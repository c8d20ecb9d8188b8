// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_DISK_WRITE_H
#define VELMARCON_TESTS_POWERCUT_DISK_WRITE_H

#include <cstdint>
#include <vector>

namespace powercut {

using Bytes = std::vector<std::uint8_t>;

/// What a file system asked of its disk: to write these bytes, or, with `is_flush`, to make all that it wrote
/// before survive a power cut.
struct DiskWrite {
    std::uint64_t offset = 0;
    Bytes bytes = {};
    bool is_flush = false;
    bool survives = false;  ///< it was to be on the medium, not only in the disk's memory, when it was done
};

using WriteLog = std::vector<DiskWrite>;

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_DISK_WRITE_H
