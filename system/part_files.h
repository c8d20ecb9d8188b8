// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_PART_FILES_H
#define VELMARCON_SYSTEM_PART_FILES_H

#include <string>

/// Part files: the temporary names of files that are being written, and the removal of those that killed runs
/// left. No search for images or databases picks up a part file.
namespace part_files {

/// A file name, without a folder, that is unique across computers: `.velmarcon-<host>-<process>-<random
/// number>.part`. It does not contain the file's final name, so it is never too long.
std::string NewName();

/// Removes from `folder` (with its separator, or empty for the current folder) the part files of killed runs:
/// those of this computer whose process has ended, and those of other computers that nobody has written to
/// for a day. Called before this run makes a part file there. A part file that cannot be removed stays. On a
/// file system that may cut a rename short (see file_system::LosesReplacedFiles), so does one that could be
/// the same file as another.
void RemoveStale(const std::string& folder);

}  // namespace part_files

#endif  // VELMARCON_SYSTEM_PART_FILES_H
