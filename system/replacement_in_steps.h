// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_REPLACEMENT_IN_STEPS_H
#define VELMARCON_SYSTEM_REPLACEMENT_IN_STEPS_H

#include <string>
#include <system_error>

#include "system/handle.h"

/// The replacing of a file where a rename over it could cost both when the card is pulled or the power goes:
/// a copy of the old file is made as `<name>.old`, the new file takes the name, the copy is removed; and each
/// step is on the disk before the next one begins.
namespace replacement_in_steps {

/// Replaces the file `path` by the file `part`, which is open as `file` and on the disk. An older file
/// `<name>.old` is not touched: the next free one of `<name>.old2` to `<name>.old9` is used. After an
/// error the old file stands there as before, or, if that is in doubt, its copy is left.
[[nodiscard]] std::error_code Replace(const Handle& file, const std::string& part, const std::string& path);

/// When nothing stands at `path`, but the copy that Replace had made when it ended early, on a file system
/// that needs that: gives the old file its name back, and prints a line. Returns whether it did.
[[nodiscard]] bool PutBack(const std::string& path);

}  // namespace replacement_in_steps

#endif  // VELMARCON_SYSTEM_REPLACEMENT_IN_STEPS_H
