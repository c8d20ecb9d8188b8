// SPDX-License-Identifier: MIT
#include <windows.h>

#include "system/file_system.h"
#include "system/system_path.h"
#include "system/windows/windows_error.h"

namespace file_system {

namespace {

/// Whoever looks through new files, for viruses or for a search, may have one of the two open for a moment.
int Move(const std::string& from, const std::string& to, DWORD flags) {
    constexpr int most_tries = 20;
    constexpr DWORD pause = 50;  // ms
    for (int i = 1;; ++i) {
        if (::MoveFileExW(system_path::ToSystem(from).c_str(), system_path::ToSystem(to).c_str(), flags) !=
            0) {
            return 0;
        }
        const int error = ErrnoOfLastWindowsError();
        if ((error != EBUSY && error != EACCES) || i == most_tries) {
            return error;
        }
        ::Sleep(pause);
    }
}

}  // namespace

int Rename(const std::string& from, const std::string& to) {
    return Move(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

int RenameToFree(const std::string& from, const std::string& to) {
    return Move(from, to, MOVEFILE_WRITE_THROUGH);
}

}  // namespace file_system
