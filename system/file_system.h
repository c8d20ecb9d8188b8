// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_FILE_SYSTEM_H
#define VELMARCON_SYSTEM_FILE_SYSTEM_H

#include <cerrno>
#include <cstdint>
#include <span>
#include <string>

/// What the writing of files asks of the system, once for POSIX and once for Windows. Error numbers are those
/// of <cerrno> on both.
namespace file_system {

/// What stands at a path; a symbolic link is not followed.
enum class Kind { kNothing, kPlainFile, kLink, kFolder, kOther };

/// Who may read a file that is being written.
enum class Readers { kAsUsual, kOwner };

/// The error number of the call that failed last; never 0.
inline int LastError() {
    return errno != 0 ? errno : EIO;
}

/// What the error number means, in words.
const char* ErrorText(int error);

/// Where the chain of symbolic links from `path` ends. On POSIX, whether or not a file stands there. Returns
/// 0 or an error number.
int FollowLinks(const std::string& path, std::string& target);

/// Returns 0 or an error number.
int KindOf(const std::string& path, Kind& kind);

/// Returns 0 when the file at `path` may be written and replaced, or an error number.
int CheckWritable(const std::string& path);

/// The folder of `path` with its separator; empty for a bare name.
std::string FolderOf(const std::string& path);

/// Whether anything stands at `path`, a link that leads nowhere included.
bool IsTaken(const std::string& path);

/// Makes the file `path` where nothing stands, and keeps others from removing it as long as it is open, as
/// far as the file system has locks. Returns its descriptor, or -1 with errno.
int CreateNew(const std::string& path, Readers readers);

/// Removes the plain file at `path`, if it was last written to at least `least_age` seconds ago and nobody
/// has it open for writing.
void RemoveAbandoned(const std::string& path, std::int64_t least_age);

/// Writes all of `bytes`. Returns 0 or an error number.
int Write(int descriptor, std::span<const char> bytes);

/// Hands what was written to the file system: only then do some tell that it found no room. Returns 0 or an
/// error number.
int Flush(int descriptor);

/// Length in bytes of the open file. Returns 0 or an error number.
int SizeOf(int descriptor, std::uint64_t& size);

/// Returns 0 when `path` still is the name of the open file, or an error number.
int CheckName(int descriptor, const std::string& path);

/// Gives the open file what the file at `path` has of owner, mode, access control list and attributes, as
/// far as the system lets it; nobody may do more with it than with that one. Returns 0 or an error number.
int TakeOver(int descriptor, const std::string& path);

/// Waits until the open file is on the disk. Returns 0 or an error number.
int Synchronize(int descriptor);

/// The same for all of the file system on which it is.
int SynchronizeVolume(int descriptor);

/// Opens the file at `path`, if the system can remove or replace an open one: what it holds then stays on the
/// disk until the descriptor is closed. Elsewhere the descriptor is -1. Returns 0 or an error number.
int Hold(const std::string& path, int& descriptor);

/// Whether the file system of `path`, where something must stand, may lose both files when one is renamed
/// over the other: FAT and its kin, which keep no journal, and those that are no part of the system.
bool LosesReplacedFiles(const std::string& path);

/// Gives the file `from` the name `to` in one step, in place of the file or link that has it. Returns 0 or an
/// error number.
int Rename(const std::string& from, const std::string& to);

/// Gives the file `from` the name `to` if nothing at all stands there. Returns 0 or an error number; EEXIST
/// when something does.
int RenameToFree(const std::string& from, const std::string& to);

void Remove(const std::string& path);
void Close(int descriptor);

}  // namespace file_system

#endif  // VELMARCON_SYSTEM_FILE_SYSTEM_H
