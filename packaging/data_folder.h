// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_DATA_FOLDER_H
#define VELMARCON_PACKAGING_DATA_FOLDER_H

#include <filesystem>

/// Where the user's own lens and sensor databases stand: `velmarcon` in $XDG_DATA_HOME, or in ~/.local/share
/// when that is not set or, against the XDG Base Directory Specification, not absolute. Empty when there is
/// neither of them nor a home folder.
std::filesystem::path DataFolder();

/// Makes the folder, for the user alone as that specification says, unless it is there. Returns 0 or the
/// system's error number, ENOENT for an empty path.
[[nodiscard]] int MakeDataFolder(const std::filesystem::path& folder);

/// Copies the lens database `source` into the folder, unless something stands there under the name lensdb.ini
/// already. A copy takes that name only when it is whole. Returns 0 or the system's error number; the
/// databases that are there are untouched either way.
[[nodiscard]] int CopyLensDatabase(const std::filesystem::path& source, const std::filesystem::path& folder);

#endif  // VELMARCON_PACKAGING_DATA_FOLDER_H
