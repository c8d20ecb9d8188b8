// SPDX-License-Identifier: MIT
#include <windows.h>

#include "system/file_system.h"
#include "system/system_error.h"
#include "system/system_path.h"

namespace file_system {

namespace {

/// Retries for a second: a virus scanner or a search index may have one of the two files open for a moment.
std::error_code Move(const std::string& from, const std::string& to, DWORD flags) {
    constexpr int most_tries = 20;
    constexpr DWORD pause = 50;  // ms
    for (int i = 1;; ++i) {
        if (::MoveFileExW(system_path::ToSystem(from).c_str(), system_path::ToSystem(to).c_str(), flags) !=
            0) {
            return {};
        }
        const std::error_code error = system_error::Last();
        const bool may_pass =
            error == std::errc::device_or_resource_busy || error == std::errc::permission_denied;
        if (!may_pass || i == most_tries) {
            return error;
        }
        ::Sleep(pause);
    }
}

}  // namespace

std::error_code Rename(const std::string& from, const std::string& to) {
    return Move(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
}

std::error_code RenameToFree(const std::string& from, const std::string& to) {
    return Move(from, to, MOVEFILE_WRITE_THROUGH);
}

}  // namespace file_system
