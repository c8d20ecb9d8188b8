// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SYSTEM_SANDBOX_H
#define VELMARCON_SYSTEM_SANDBOX_H

#include <string>
#include <vector>

/// The folders and files that a process needs once it knows its input and output.
struct Reach {
    std::vector<std::string> read_folders;
    std::vector<std::string> written_folders;  ///< their files are read, made, renamed and removed
    std::vector<std::string> read_files;       ///< links to files in any folder
};

/// From this call until it ends, the process can open no file outside `reach`, so that a damaged file that
/// exploits a bug can do no harm elsewhere. Open files stay open. Returns whether the system supports this;
/// without Landlock, which only Linux has, nothing changes.
[[nodiscard]] bool EnterSandbox(const Reach& reach);

#endif  // VELMARCON_SYSTEM_SANDBOX_H
