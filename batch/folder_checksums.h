// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_FOLDER_CHECKSUMS_H
#define VELMARCON_BATCH_FOLDER_CHECKSUMS_H

#include <optional>
#include <string>

#include "batch/proof/checksums.h"

/// The check sums in the files SHA256SUMS. That of a folder is read once for all files that are asked for one
/// after the other.
class FolderChecksums {
  public:
    /// The one of the file at `path`; nothing when the SHA256SUMS in its folder has none, or cannot be read.
    std::optional<std::string> Of(const std::string& path);

  private:
    std::string folder_;  ///< from which the check sums are
    Checksums checksums_;
};

#endif  // VELMARCON_BATCH_FOLDER_CHECKSUMS_H
