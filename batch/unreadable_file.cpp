// SPDX-License-Identifier: MIT
#include "batch/unreadable_file.h"

#include <filesystem>

#include "batch/picture.h"
#include "batch/shown.h"
#include "system/file_system.h"
#include "system/input_file.h"
#include "system/system_path.h"

std::error_code WhyUnreadable(const std::string& path) {
    InputFile file;
    if (file.Open(path)) {
        return {};
    }
    const std::error_code error = file.error() ? file.error() : std::make_error_code(std::errc::io_error);
    const bool is_refused =
        error == std::errc::permission_denied || error == std::errc::operation_not_permitted;
    const bool leads_nowhere = error == std::errc::no_such_file_or_directory && file_system::IsTaken(path);
    std::error_code unknown;
    const bool is_file = std::filesystem::is_regular_file(system_path::ToSystem(path), unknown);
    return is_file || is_refused || leads_nowhere ? error : std::error_code();
}

bool FailIfUnreadable(const std::string& path, Record& record) {
    const std::error_code error = WhyUnreadable(path);
    if (error) {
        record.Fail(NameIn(path) + " cannot be read: " + ErrorText(error),
                    "cannot be read: " + ErrorText(error));
    }
    return static_cast<bool>(error);
}
