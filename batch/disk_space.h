// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_DISK_SPACE_H
#define VELMARCON_BATCH_DISK_SPACE_H

#include <cstdint>
#include <span>

#include "batch/jobs.h"

/// What the DNGs that are to be made need, and what there is, by file system.
struct Space {
    std::uint64_t needed = 0;  ///< bytes, in all
    std::uint64_t free = 0;    ///< bytes, on the file system that has the fewest
    bool enough = true;        ///< on each of them
};

/// For the DNGs that `tasks` make anew, with previews if `preview` says so.
Space SpaceFor(std::span<const Task> tasks, bool preview);

#endif  // VELMARCON_BATCH_DISK_SPACE_H
