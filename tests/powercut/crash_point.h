// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_CRASH_POINT_H
#define VELMARCON_TESTS_POWERCUT_CRASH_POINT_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "tests/powercut/disk_write.h"

namespace powercut {

/// A moment at which the power fails.
struct CrashPoint {
    std::size_t requests = 0;  ///< number of writes and flushes before it
    double lost = 0;  ///< fraction of the writes since the last flush that were still in the disk's cache
    std::uint32_t seed = 0;  ///< selects the lost writes

    /// Applies the writes to `disk` that have reached the medium by then.
    void Apply(const WriteLog& log, std::span<std::uint8_t> disk) const;

    std::string Description() const;
};

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_CRASH_POINT_H
