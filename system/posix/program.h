// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_POSIX_PROGRAM_H
#define VELMARCON_SYSTEM_POSIX_PROGRAM_H

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

/// The running program of an installed command: its beginning, its file, and its replacement by another one.
namespace program {

/// To be called first in main: a failed write is an error and no signal, no file gets the number of a missing
/// standard stream, and freed memory stays for the next picture. Returns the arguments without the program's
/// name.
std::vector<std::string> Begin(int argc, char** argv);

/// The file of the running program, with all links resolved; std::nullopt if it is unknown.
std::optional<std::filesystem::path> OwnFile();

/// Replaces this process with the program `file` and these arguments, the first of which is the program's
/// name. Returns only if that fails, with the reason.
[[nodiscard]] std::error_code Become(const std::filesystem::path& file, std::vector<std::string> arguments);

}  // namespace program

#endif  // VELMARCON_SYSTEM_POSIX_PROGRAM_H
