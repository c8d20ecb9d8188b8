// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_WHOLE_COPY_H
#define VELMARCON_PACKAGING_WHOLE_COPY_H

#include <filesystem>

/// Copies the file `source` to `final_path`, a name without a dash, which the copy takes when it is whole and
/// on disk, and only if nothing stands there. A symbolic link at `source` is followed. Returns 0 or the
/// system's error number, EEXIST when the name is taken; `source` is untouched either way.
[[nodiscard]] int CopyWhole(const std::filesystem::path& source, const std::filesystem::path& final_path);

#endif  // VELMARCON_PACKAGING_WHOLE_COPY_H
