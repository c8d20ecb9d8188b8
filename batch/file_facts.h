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

#endif  // VELMARCON_BATCH_FILE_FACTS_H
