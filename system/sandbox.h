// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_SANDBOX_H
#define VELMARCON_SYSTEM_SANDBOX_H

#include <string>
#include <vector>

/// The folders and files that a process needs once it knows what it works on.
struct Reach {
    std::vector<std::string> read_folders;
    std::vector<std::string> written_folders;  ///< files in them are read, made, renamed and removed
    std::vector<std::string> read_files;       ///< links, each to a file that may stand anywhere
};

/// From here on the system refuses the process every file that is not in its reach, for good: a damaged file
/// that found a bug could do no harm elsewhere. Files that are open stay so. Returns whether it does: Linux
/// with Landlock can; without it nothing changes.
[[nodiscard]] bool EnterSandbox(const Reach& reach);

#endif  // VELMARCON_SYSTEM_SANDBOX_H
