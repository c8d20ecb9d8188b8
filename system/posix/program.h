// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_POSIX_PROGRAM_H
#define VELMARCON_SYSTEM_POSIX_PROGRAM_H

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

/// The running program and its place in the system. The launcher, which asks for this, is not made for
/// Windows.
namespace program {

/// The file of the running program, with all links followed; nothing where the system does not tell.
std::optional<std::filesystem::path> OwnFile();

/// Becomes the program `file` with these arguments, the first of which is its name. Returns only when that
/// fails, with the reason.
[[nodiscard]] std::error_code Become(const std::filesystem::path& file, std::vector<std::string> arguments);

}  // namespace program

#endif  // VELMARCON_SYSTEM_POSIX_PROGRAM_H
