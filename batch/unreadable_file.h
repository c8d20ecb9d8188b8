// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_UNREADABLE_FILE_H
#define VELMARCON_BATCH_UNREADABLE_FILE_H

#include <string>
#include <system_error>

#include "batch/records.h"

/// Why the file at `path`, which is there, cannot be opened. No error when it can be opened, when there is
/// none, and when something else than a file has its name.
std::error_code WhyUnreadable(const std::string& path);

/// Returns whether the file at `path` is such a one, and the picture has failed for it.
[[nodiscard]] bool FailIfUnreadable(const std::string& path, Record& record);

#endif  // VELMARCON_BATCH_UNREADABLE_FILE_H
