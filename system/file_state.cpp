// SPDX-License-Identifier: MIT
#include "system/file_state.h"

#include <algorithm>
#include <ctime>

bool FileState::Settled() const {
    constexpr std::int64_t coarsest_tick = 2;
    return std::int64_t{std::time(nullptr)} - std::max(modified_seconds, changed_seconds) > coarsest_tick;
}
