// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_REPLACEMENT_IN_STEPS_H
#define VELMARCON_SYSTEM_REPLACEMENT_IN_STEPS_H

#include <string>
#include <system_error>

#include "system/handle.h"

/// Replaces a file on a file system where a rename over it could lose both files if the card is pulled or the
/// power fails. Copies the old file to `<name>.old`, gives the new file the name, and removes the copy; each
/// step is on the disk before the next one begins.
namespace replacement_in_steps {

/// Replaces the file `path` with the file `part`, which is open as `file` and already on the disk. If
/// `<name>.old` exists, it stays, and the copy gets the first free name of `<name>.old2` to `<name>.old9`.
/// After an error the old file is unchanged, or, if that is in doubt, its copy is left.
[[nodiscard]] std::error_code Replace(const Handle& file, const std::string& part, const std::string& path);

/// If a run ended in the middle of Replace, so that `path` is missing but its old copy exists, gives the old
/// file its name back and prints a line. Does so only on a file system that loses replaced files. Returns
/// whether it did.
[[nodiscard]] bool PutBack(const std::string& path);

}  // namespace replacement_in_steps

#endif  // VELMARCON_SYSTEM_REPLACEMENT_IN_STEPS_H
