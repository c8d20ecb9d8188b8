// SPDX-License-Identifier: MIT
#include "sensor/file_state.h"

#include <sys/stat.h>

#include <algorithm>
#include <ctime>

#include "input/interrupted_call.h"

bool FileState::Settled() const {
    constexpr std::int64_t coarsest_tick = 2;
    return std::int64_t{std::time(nullptr)} - std::max(modified_seconds, changed_seconds) > coarsest_tick;
}

std::optional<FileState> StateOf(const std::string& path) {
    struct stat status = {};
    if (RepeatInterrupted([&] { return ::stat(path.c_str(), &status); }) != 0) {
        return std::nullopt;
    }
#if defined(__APPLE__)
    const auto& modified = status.st_mtimespec;
    const auto& changed = status.st_ctimespec;
#else
    const auto& modified = status.st_mtim;
    const auto& changed = status.st_ctim;
#endif
    return FileState{status.st_dev,    status.st_ino,  status.st_size, modified.tv_sec,
                     modified.tv_nsec, changed.tv_sec, changed.tv_nsec};
}
