// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_WHOLE_COPY_H
#define VELMARCON_PACKAGING_WHOLE_COPY_H

#include <filesystem>

/// Copies the file `source` to `final_path`, a name without a dash. The copy gets that name when it is
/// complete and on disk, and only if the name is free. A symbolic link at `source` is followed. Returns 0 or
/// the system's error number, EEXIST if the name is taken; `source` is never changed.
[[nodiscard]] int CopyWhole(const std::filesystem::path& source, const std::filesystem::path& final_path);

#endif  // VELMARCON_PACKAGING_WHOLE_COPY_H
