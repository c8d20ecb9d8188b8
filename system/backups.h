// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_BACKUPS_H
#define VELMARCON_SYSTEM_BACKUPS_H

#include <cstdint>
#include <functional>
#include <string>
#include <system_error>

/// Backups of a file that is about to be replaced. Each has the file's name and a number, such as
/// sensdb.ini.1. No backup is ever replaced.
namespace backups {

/// The content of the file, which the caller knows how to compare and to write.
struct Content {
    /// Whether the file `copy` has the same content.
    std::function<bool(const std::string& copy)> is_in;

    /// Writes the file `copy`, completely or not at all. Returns file_exists if the name is taken.
    std::function<std::error_code(const std::string& copy)> write_to;
};

/// The highest number of any backup of the file `path`; 0 if there is none. If the folder cannot be listed
/// completely, `error` says why, and the result covers only the names that were listed.
[[nodiscard]] std::uint32_t HighestNumber(const std::string& path, std::error_code& error);

/// Backs up the file `path` under the first free number after `highest`, and stores the name of the backup in
/// `made`. If the backup numbered `highest` already has the same content, makes none and leaves `made` empty.
[[nodiscard]] std::error_code Make(const std::string& path, std::uint32_t highest, const Content& content,
                                   std::string& made);

}  // namespace backups

#endif  // VELMARCON_SYSTEM_BACKUPS_H
