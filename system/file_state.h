// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_FILE_STATE_H
#define VELMARCON_SYSTEM_FILE_STATE_H

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

/// Distinguishes one version of a file from another without reading it.
struct FileState {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;              ///< bytes
    std::int64_t modified_seconds = 0;  ///< since 1970
    std::int64_t modified_nanoseconds = 0;
    std::int64_t changed_seconds = 0;
    std::int64_t changed_nanoseconds = 0;

    friend bool operator==(const FileState&, const FileState&) = default;

    /// Whether the file was last changed longer ago than the coarsest time step of a file system (2 s, FAT).
    /// A more recent file may change again without a change of its times.
    bool Settled() const;
};

/// The state of the file at `path`. If it is unknown, returns std::nullopt and puts the reason into `error`:
/// no_such_file_or_directory if there is no file.
[[nodiscard]] std::optional<FileState> StateOf(const std::string& path, std::error_code& error);

#endif  // VELMARCON_SYSTEM_FILE_STATE_H
