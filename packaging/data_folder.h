// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_DATA_FOLDER_H
#define VELMARCON_PACKAGING_DATA_FOLDER_H

#include <filesystem>
#include <string>
#include <system_error>

/// The data folder with the user's lens and sensor databases: `velmarcon` in $XDG_DATA_HOME, or in
/// ~/.local/share if that is not set or, against the XDG Base Directory Specification, not absolute. Empty if
/// there is no home folder either.
std::filesystem::path DataFolder();

/// Makes the folder, for the user alone as that specification says, if it does not exist. Returns
/// no_such_file_or_directory for an empty path.
[[nodiscard]] std::error_code MakeDataFolder(const std::filesystem::path& folder);

/// Copies the lens database `source` into the folder, unless the name lensdb.ini is taken there. The copy
/// gets that name only when it is complete. Existing databases are never changed.
[[nodiscard]] std::error_code CopyLensDatabase(const std::filesystem::path& source,
                                               const std::filesystem::path& folder);

#endif  // VELMARCON_PACKAGING_DATA_FOLDER_H
