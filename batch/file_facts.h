// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_FILE_FACTS_H
#define VELMARCON_BATCH_FILE_FACTS_H

#include <optional>
#include <string>
#include <system_error>

#include "system/file_state.h"

/// The state of the file at `path`; nothing when it cannot be told.
inline std::optional<FileState> StateAt(const std::string& path) {
    std::error_code unknown;
    return StateOf(path, unknown);
}

/// Whether both paths lead to one file, and there is one.
inline bool IsSameFile(const std::string& a, const std::string& b) {
    const auto state_a = StateAt(a);
    const auto state_b = StateAt(b);
    return state_a && state_b && state_a->device == state_b->device && state_a->inode == state_b->inode;
}

#endif  // VELMARCON_BATCH_FILE_FACTS_H
