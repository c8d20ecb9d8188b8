// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_FILE_SYSTEM_H
#define VELMARCON_SYSTEM_FILE_SYSTEM_H

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>

#include "system/handle.h"

/// What the writing of files asks of the system, once for POSIX and once for Windows. Each operation returns
/// what went wrong; see system_error.h.
namespace file_system {

/// What stands at a path; a symbolic link is not followed.
enum class Kind { kNothing, kPlainFile, kLink, kFolder, kOther };

/// Permissions of a new file, from which the system takes those that the user withholds from new files.
constexpr std::filesystem::perms kAsUsual{0666};
constexpr std::filesystem::perms kForOwner{0600};

/// Where the chain of symbolic links from `path` ends. On POSIX, whether or not a file stands there.
[[nodiscard]] std::error_code FollowLinks(const std::string& path, std::string& target);

[[nodiscard]] std::error_code KindOf(const std::string& path, Kind& kind);

/// Whether the file at `path` may be written and replaced: why not, or no error.
[[nodiscard]] std::error_code CheckWritable(const std::string& path);

/// Whether anything stands at `path`, a link that leads nowhere included.
[[nodiscard]] bool IsTaken(const std::string& path);

/// Makes the file `path` where nothing stands, and keeps others from removing it as long as it is open, as
/// far as the file system has locks.
[[nodiscard]] std::error_code CreateNew(const std::string& path, std::filesystem::perms permissions,
                                        Handle& file);

/// Removes the plain file at `path`, if it was last written to at least `least_age` seconds ago and nobody
/// has it open for writing.
void RemoveAbandoned(const std::string& path, std::int64_t least_age);

/// Writes all of `bytes`.
[[nodiscard]] std::error_code Write(const Handle& file, std::span<const char> bytes);

/// Hands what was written to the file system: only then do some tell that it found no room.
[[nodiscard]] std::error_code Flush(const Handle& file);

/// Length of the open file in bytes.
[[nodiscard]] std::error_code SizeOf(const Handle& file, std::uint64_t& size);

/// Whether `path` still is the name of the open file: no error, or why not.
[[nodiscard]] std::error_code CheckName(const Handle& file, const std::string& path);

/// Gives the open file what the file at `path` has of owner, mode, access control list and attributes, as
/// far as the system lets it; nobody may do more with it than with that one.
[[nodiscard]] std::error_code TakeOver(const Handle& file, const std::string& path);

/// Waits until the open file is on the disk.
[[nodiscard]] std::error_code Synchronize(const Handle& file);

/// The same for all of the file system on which it is.
[[nodiscard]] std::error_code SynchronizeVolume(const Handle& file);

/// Waits until the names in `folder`, a path as path_names::SystemFolderPart gives it, are on the disk.
[[nodiscard]] std::error_code SynchronizeFolder(const std::string& folder);

/// Opens the file at `path`, if the system can remove or replace an open one: what it holds then stays on the
/// disk until the handle is closed. Elsewhere it stays closed.
[[nodiscard]] std::error_code Hold(const std::string& path, Handle& file);

/// Whether the file system of `path`, where something must stand, may lose both files when one is renamed
/// over the other: FAT and its kin, which keep no journal, and those that are no part of the system.
[[nodiscard]] bool LosesReplacedFiles(const std::string& path);

/// Gives the file `from` the name `to` in one step, in place of the file or link that has it.
[[nodiscard]] std::error_code Rename(const std::string& from, const std::string& to);

/// Gives the file `from` the name `to` if nothing at all stands there; file_exists when something does.
[[nodiscard]] std::error_code RenameToFree(const std::string& from, const std::string& to);

void Remove(const std::string& path);

}  // namespace file_system

#endif  // VELMARCON_SYSTEM_FILE_SYSTEM_H
