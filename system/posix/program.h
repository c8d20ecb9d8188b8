// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_POSIX_PROGRAM_H
#define VELMARCON_SYSTEM_POSIX_PROGRAM_H

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

/// The file of the running program, and its replacement by another program. Only the launcher, which does not
/// exist for Windows, uses this.
namespace program {

/// The file of the running program, with all links resolved; std::nullopt if it is unknown.
std::optional<std::filesystem::path> OwnFile();

/// Replaces this process with the program `file` and these arguments, the first of which is the program's
/// name. Returns only if that fails, with the reason.
[[nodiscard]] std::error_code Become(const std::filesystem::path& file, std::vector<std::string> arguments);

}  // namespace program

#endif  // VELMARCON_SYSTEM_POSIX_PROGRAM_H
