// SPDX-License-Identifier: MIT
#include "tests/powercut/crash_point.h"

#include <algorithm>
#include <random>

namespace powercut {

void CrashPoint::Apply(const WriteLog& log, std::span<std::uint8_t> disk) const {
    const auto begin = log.begin();
    const auto end = begin + static_cast<std::ptrdiff_t>(requests);
    auto last_flush = end;
    while (last_flush != begin && !last_flush[-1].is_flush) {
        --last_flush;
    }
    std::mt19937 random(seed);
    std::bernoulli_distribution is_lost(lost);
    for (auto write = begin; write != end; ++write) {
        const bool may_be_lost = write >= last_flush && !write->survives;
        if (!may_be_lost || !is_lost(random)) {
            std::ranges::copy(write->bytes, disk.begin() + static_cast<std::ptrdiff_t>(write->offset));
        }
    }
}

std::string CrashPoint::Description() const {
    const std::string after = "after request " + std::to_string(requests);
    return lost == 0 ? after : after + " with writes lost (seed " + std::to_string(seed) + ")";
}

}  // namespace powercut
