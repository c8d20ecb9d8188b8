// SPDX-License-Identifier: MIT
#include "system/folder_listing.h"

#include <windows.h>

#include "system/path_names.h"
#include "system/system_error.h"
#include "system/system_path.h"

struct FolderListing::System {
    HANDLE search = INVALID_HANDLE_VALUE;
    bool at_entry = false;  ///< `entry` holds an entry that NextFile has not returned yet
    WIN32_FIND_DATAW entry = {};
};

FolderListing::FolderListing(const std::string& path) {
    const DWORD attributes = ::GetFileAttributesW(system_path::ToSystem(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        return;
    }
    auto system = std::make_unique<System>();
    const std::string all = path + (path_names::EndsInSeparator(path) ? "*" : "\\*");
    system->search = ::FindFirstFileW(system_path::ToSystem(all).c_str(), &system->entry);
    system->at_entry = system->search != INVALID_HANDLE_VALUE;
    // The root of a drive may be empty; every other folder lists at least itself.
    if (system->at_entry || ::GetLastError() == ERROR_FILE_NOT_FOUND) {
        system_ = std::move(system);
    }
}

FolderListing::~FolderListing() {
    if (system_ && system_->search != INVALID_HANDLE_VALUE) {
        ::FindClose(system_->search);
    }
}

std::optional<std::string> FolderListing::NextFile() {
    while (system_->at_entry) {
        const bool folder = (system_->entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        std::string name = system_path::FromWide(&system_->entry.cFileName[0]);
        system_->at_entry = ::FindNextFileW(system_->search, &system_->entry) != 0;
        if (!system_->at_entry && ::GetLastError() != ERROR_NO_MORE_FILES) {
            error_ = system_error::Last();
        }
        if (!folder) {
            return name;
        }
    }
    return std::nullopt;
}
