// SPDX-License-Identifier: MIT
#include "batch/checksum_lists.h"

#include <cstdio>
#include <system_error>

#include "batch/picture.h"
#include "batch/proof/checksums.h"
#include "batch/shown.h"
#include "system/file_system.h"

namespace {

/// Returns 0, or the system's number of what went wrong.
int UpdateFile(const std::string& folder, const std::map<std::string, std::string>& sums) {
    Checksums before;
    if (const int error = ReadChecksums(folder, before); error != 0) {
        return error;
    }
    Checksums all = before;
    for (const auto& [name, sum] : sums) {
        all[name] = sum;
    }
    std::erase_if(all, [](const auto& line) { return line.second.empty(); });
    if (all.empty() && !before.empty()) {
        file_system::Remove(folder + "SHA256SUMS");
        return 0;
    }
    return all == before ? 0 : WriteChecksums(folder, all);
}

}  // namespace

void ChecksumLists::Set(const std::string& dng, const std::string& sum) {
    sums_[FolderIn(dng)][NameIn(dng)] = sum;
}

bool ChecksumLists::Write() const {
    bool all_written = true;
    for (const auto& [folder, sums] : sums_) {
        if (const int error = UpdateFile(folder, sums); error != 0) {
            all_written = false;
            (void)std::fprintf(stderr, "velmarcon-batch: %sSHA256SUMS cannot be written: %s\n",
                               Shown(folder).c_str(), ErrorText({error, std::generic_category()}).c_str());
        }
    }
    return all_written;
}
