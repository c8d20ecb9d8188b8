// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_FILE_CALLS_H
#define VELMARCON_INPUT_FILE_CALLS_H

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

/// What the writing of files asks of the system, once for POSIX and once for Windows. Error numbers are those
/// of <cerrno> on both.
namespace file_calls {

/// What stands at a path; of a symbolic link, what it leads to.
enum class Kind { kNothing, kPlainFile, kFolder, kOther };

/// The error number of the call that failed last; never 0.
inline int LastError() {
    return errno != 0 ? errno : EIO;
}

/// What the error number means, in words.
const char* ErrorText(int error);

/// Where the chain of symbolic links from `path` ends. On POSIX, whether or not a file stands there. Returns
/// 0 or an error number.
int FollowLinks(const std::string& path, std::string& target);

/// The file at `path` by its real name, without any link; an error when there is none.
std::filesystem::path RealName(const std::string& path, std::error_code& error);

/// Returns 0 or an error number.
int KindOf(const std::string& path, Kind& kind);

/// Returns 0 when the file at `path` may be written and replaced, or an error number.
int CheckWritable(const std::string& path);

/// The folder of `path` with its separator; empty for a bare name.
std::string FolderOf(const std::string& path);

/// Whether anything stands at `path`, a link that leads nowhere included.
bool IsTaken(const std::string& path);

/// Makes the file `path`, for this run alone as long as it is open. Returns its descriptor, or -1 with errno;
/// EEXIST when something stands there that another run is writing, or that is none of ours. Without
/// locks on the file system, what a killed run left stays.
int CreateLocked(const std::string& path);

/// Removes what a killed run left at `path`, if that is what stands there. Returns whether it did.
bool RemoveStale(const std::string& path);

/// Length in bytes of the open file. Returns 0 or an error number.
int SizeOf(int descriptor, std::uint64_t& size);

/// Makes the open file ready to take the name `path`. A new file may wait for the system to write it; one
/// that replaces another takes over what that one has of owner, mode and attributes, and must be on disk
/// before that one goes. Returns 0 or an error number.
int PrepareToReplace(int descriptor, const std::string& path);

/// Gives the file `from` the name `to` in one step, in place of the file that has it. Returns 0 or an error
/// number.
int Rename(const std::string& from, const std::string& to);

void Remove(const std::string& path);
void Close(int descriptor);

}  // namespace file_calls

#endif  // VELMARCON_INPUT_FILE_CALLS_H
