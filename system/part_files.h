// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_PART_FILES_H
#define VELMARCON_SYSTEM_PART_FILES_H

#include <string>

/// The names under which files are written before they get their own, and what killed runs leave under such
/// names. No search for images or databases picks one up.
namespace part_files {

/// A name without its folder that no other file has, on this or any other computer:
/// `.velmarcon-<host>-<process>-<random number>.part`. It does not depend on the name that the file is to
/// get, so that it never is too long.
std::string NewName();

/// Removes from `folder` (with its separator, or empty for the current one) the parts of runs that were
/// killed: those of this computer whose process has ended, and those of others that nobody has written to for
/// a day. Called before this run makes a part there. What cannot be removed stays; so does, where a rename
/// may be cut short (see file_system::LosesReplacedFiles), a part that could be the same file as another one.
void RemoveStale(const std::string& folder);

}  // namespace part_files

#endif  // VELMARCON_SYSTEM_PART_FILES_H
