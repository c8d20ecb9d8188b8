// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_FILE_SYSTEM_H
#define VELMARCON_SYSTEM_FILE_SYSTEM_H

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>

#include "system/handle.h"

/// The calls of the system that writing files needs, implemented once for POSIX and once for Windows. Each
/// operation returns what went wrong; see system_error.h.
namespace file_system {

/// What a path names; a symbolic link is not followed.
enum class Kind { kNothing, kPlainFile, kLink, kFolder, kOther };

/// Permissions of a new file, before the system removes those in the user's umask.
constexpr std::filesystem::perms kAsUsual{0666};
constexpr std::filesystem::perms kForOwner{0600};

/// Resolves the symbolic links of `path` into `target`; on POSIX the target need not exist.
[[nodiscard]] std::error_code FollowLinks(const std::string& path, std::string& target);

[[nodiscard]] std::error_code KindOf(const std::string& path, Kind& kind);

/// Checks that the file at `path` may be written and replaced. Returns why not, or no error.
[[nodiscard]] std::error_code CheckWritable(const std::string& path);

/// Whether anything exists at `path`, including a broken link.
[[nodiscard]] bool IsTaken(const std::string& path);

/// Creates the file `path`, which must not exist, and, if the file system has locks, keeps others from
/// removing it while it is open.
[[nodiscard]] std::error_code CreateNew(const std::string& path, std::filesystem::perms permissions,
                                        Handle& file);

/// Removes the plain file at `path` if it was last written at least `least_age` seconds ago and no run is
/// still writing it. A time in the future counts as now.
void RemoveAbandoned(const std::string& path, std::int64_t least_age);

/// Writes all of `bytes`.
[[nodiscard]] std::error_code Write(const Handle& file, std::span<const char> bytes);

/// Hands what was written to the file system; some report a full disk only then.
[[nodiscard]] std::error_code Flush(const Handle& file);

/// Length of the open file in bytes.
[[nodiscard]] std::error_code SizeOf(const Handle& file, std::uint64_t& size);

/// Checks that `path` is still the name of the open file. Returns no error, or why it is not.
[[nodiscard]] std::error_code CheckName(const Handle& file, const std::string& path);

/// Gives the open file the owner, mode, access control list and attributes of the file at `path`, as far as
/// the system allows. Nobody may do more with the open file than with that one.
[[nodiscard]] std::error_code TakeOver(const Handle& file, const std::string& path);

/// Waits until all data of the open file is on the disk.
[[nodiscard]] std::error_code Synchronize(const Handle& file);

/// Waits until everything written to the file system that holds the open file is on the disk.
[[nodiscard]] std::error_code SynchronizeVolume(const Handle& file);

/// Waits until the names in `folder`, a path as path_names::SystemFolderPart gives it, are on the disk.
[[nodiscard]] std::error_code SynchronizeFolder(const std::string& folder);

/// Opens the file at `path`, so that its content stays on the disk until the handle is closed, even if the
/// file is removed or replaced. On a system that cannot remove or replace an open file, leaves `file` closed.
[[nodiscard]] std::error_code Hold(const std::string& path, Handle& file);

/// Whether the file system of `path`, which must exist, may lose both files when one is renamed over the
/// other. That is so for FAT and its kin, which keep no journal, and for those that run outside the kernel.
[[nodiscard]] bool LosesReplacedFiles(const std::string& path);

/// Renames the file `from` to `to` in one step, replacing a file or link of that name.
[[nodiscard]] std::error_code Rename(const std::string& from, const std::string& to);

/// Renames the file `from` to `to` if nothing at all has that name; otherwise returns file_exists.
[[nodiscard]] std::error_code RenameToFree(const std::string& from, const std::string& to);

void Remove(const std::string& path);

}  // namespace file_system

#endif  // VELMARCON_SYSTEM_FILE_SYSTEM_H
