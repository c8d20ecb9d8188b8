// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_POWERCUT_CRASH_POINT_H
#define VELMARCON_TESTS_POWERCUT_CRASH_POINT_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "tests/powercut/disk_write.h"

namespace powercut {

/// A moment at which the power goes.
struct CrashPoint {
    std::size_t requests = 0;  ///< how many writes and flushes came before
    double lost = 0;           ///< share of the writes since the last flush that the disk had not made yet
    std::uint32_t seed = 0;    ///< decides which ones

    /// Does to `disk` what reached the medium by then.
    void Apply(const WriteLog& log, std::span<std::uint8_t> disk) const;

    std::string Description() const;
};

}  // namespace powercut

#endif  // VELMARCON_TESTS_POWERCUT_CRASH_POINT_H
