// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_COPY_TIME_H
#define VELMARCON_BATCH_COPY_TIME_H

#include <filesystem>
#include <string>
#include <system_error>

#include "system/system_path.h"

/// Gives the file `to` the time of `from`, if it has another. Returns whether that was changed.
inline bool CopyTime(const std::string& from, const std::string& to) {
    namespace fs = std::filesystem;
    std::error_code error;
    const auto time = fs::last_write_time(system_path::ToSystem(from), error);
    const bool differs = !error && fs::last_write_time(system_path::ToSystem(to), error) != time && !error;
    if (differs) {
        fs::last_write_time(system_path::ToSystem(to), time, error);
    }
    return differs && !error;
}

#endif  // VELMARCON_BATCH_COPY_TIME_H
