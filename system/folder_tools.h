// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_FOLDER_TOOLS_H
#define VELMARCON_SYSTEM_FOLDER_TOOLS_H

#include <cstdint>
#include <span>
#include <string>
#include <system_error>
#include <vector>

/// What a tool that works on whole trees asks of the system. Errors are those of system_error.h.
namespace folder_tools {

/// Makes the folder `path`, and those that it lies in, for the user alone. What stands there must be a folder
/// of the user's own, and no link; it is closed to others.
[[nodiscard]] std::error_code MakePrivate(const std::string& path);

/// Bytes that the user may still write on the file system of the folder.
[[nodiscard]] std::error_code FreeBytes(const std::string& folder, std::uint64_t& bytes);

/// Waits until all of `files` are on the disk, with their names: one call for each file system, whatever
/// mounts there are. Returns for each file why it is not, or no error.
std::vector<std::error_code> PutOnDisk(std::span<const std::string> files);

}  // namespace folder_tools

#endif  // VELMARCON_SYSTEM_FOLDER_TOOLS_H
