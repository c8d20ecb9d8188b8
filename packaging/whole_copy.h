// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_WHOLE_COPY_H
#define VELMARCON_PACKAGING_WHOLE_COPY_H

#include <string>
#include <system_error>

/// Copies the file `source` to `destination`. The copy gets that name when it is complete and on disk, and
/// only if the name is free. A symbolic link at `source` is followed. Returns file_exists if the name is
/// taken; `source` is never changed.
[[nodiscard]] std::error_code CopyWhole(const std::string& source, const std::string& destination);

#endif  // VELMARCON_PACKAGING_WHOLE_COPY_H
