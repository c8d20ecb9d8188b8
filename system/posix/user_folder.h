// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_POSIX_USER_FOLDER_H
#define VELMARCON_SYSTEM_POSIX_USER_FOLDER_H

#include <filesystem>
#include <system_error>

/// The user's home folder and private folders. Only the launcher, which does not exist for Windows, uses
/// this.
namespace user_folder {

/// $HOME if it is an absolute path; otherwise the home folder in the system's user database, or an empty
/// path.
std::filesystem::path Home();

/// Makes the folder and its missing parent folders, accessible only to the user. Returns
/// operation_not_permitted if root would make one in the folder of another user, who could not enter it.
[[nodiscard]] std::error_code MakePrivate(const std::filesystem::path& folder);

}  // namespace user_folder

#endif  // VELMARCON_SYSTEM_POSIX_USER_FOLDER_H
