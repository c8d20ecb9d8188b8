// SPDX-License-Identifier: MIT
#include "system/folder_listing.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace {

/// Not every file system lists the type. A symbolic link counts as a file, whatever it points to.
bool IsFolder(DIR* listing, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_DIR;
    }
    struct stat status = {};
    return ::fstatat(::dirfd(listing), &entry.d_name[0], &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

}  // namespace

struct FolderListing::System {
    DIR* folder = nullptr;
};

FolderListing::FolderListing(const std::string& path) : system_(std::make_unique<System>()) {
    system_->folder = ::opendir(path.c_str());
    if (system_->folder == nullptr) {
        system_.reset();
    }
}

FolderListing::~FolderListing() {
    if (system_) {
        ::closedir(system_->folder);
    }
}

std::optional<std::string> FolderListing::NextFile() {
    errno = 0;
    while (const dirent* entry = ::readdir(system_->folder)) {
        std::string name = entry->d_name;
        if (!IsFolder(system_->folder, *entry)) {
            return name;
        }
        errno = 0;
    }
    error_ = {errno, std::generic_category()};
    return std::nullopt;
}
