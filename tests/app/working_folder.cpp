// SPDX-License-Identifier: MIT
#include "tests/app/working_folder.h"

#include "tests/support/files.h"

WorkingFolder::WorkingFolder(const std::filesystem::path& folder) : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder);
}

WorkingFolder::~WorkingFolder() {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
}

void MakeFile(const std::string& path, std::uintmax_t size) {
    support::WriteFile(path, "");
    std::filesystem::resize_file(path, size);
}
