// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_BACKUPS_H
#define VELMARCON_SYSTEM_BACKUPS_H

#include <cstdint>
#include <functional>
#include <string>
#include <system_error>

/// Backups of a file that is about to be replaced: under its name with a number, such as sensdb.ini.1. No
/// backup is ever replaced.
namespace backups {

/// What the file contains.
struct Content {
    /// Whether the file `copy` contains the same.
    std::function<bool(const std::string& copy)> is_in;

    /// Writes the file `copy`, completely or not at all. Returns file_exists if the name is taken.
    std::function<std::error_code(const std::string& copy)> write_to;
};

/// The highest number of a backup of the file `path`; 0 if there is none. If the folder cannot be listed to
/// its end, `error` says why, and the number is that of the listed names.
[[nodiscard]] std::uint32_t HighestNumber(const std::string& path, std::error_code& error);

/// Backs up the file `path` under the first free number after `highest`, and puts the name of the backup into
/// `made`; that stays empty if the backup with the number `highest` contains the same.
[[nodiscard]] std::error_code Make(const std::string& path, std::uint32_t highest, const Content& content,
                                   std::string& made);

}  // namespace backups

#endif  // VELMARCON_SYSTEM_BACKUPS_H
