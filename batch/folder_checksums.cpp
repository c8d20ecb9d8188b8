// SPDX-License-Identifier: MIT
#include "batch/folder_checksums.h"

#include "batch/picture.h"

std::optional<std::string> FolderChecksums::Of(const std::string& path) {
    const std::string folder = FolderIn(path);
    if (folder != folder_) {
        checksums_.clear();
        folder_ = folder;
        (void)ReadChecksums(folder, checksums_);
    }
    const auto found = checksums_.find(NameIn(path));
    return found != checksums_.end() ? std::optional(found->second) : std::nullopt;
}
