// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_POSIX_USER_FOLDER_H
#define VELMARCON_SYSTEM_POSIX_USER_FOLDER_H

#include <filesystem>
#include <system_error>

/// Folders of the user's own. The launcher, which asks for them, is not made for Windows.
namespace user_folder {

/// $HOME if that is an absolute path, or else what the system knows of the user; empty when there is neither.
std::filesystem::path Home();

/// Makes the folder and those that it lies in, as far as they are missing, for the user alone. Root makes
/// none in the folder of another user, who could not enter it: operation_not_permitted.
[[nodiscard]] std::error_code MakePrivate(const std::filesystem::path& folder);

}  // namespace user_folder

#endif  // VELMARCON_SYSTEM_POSIX_USER_FOLDER_H
