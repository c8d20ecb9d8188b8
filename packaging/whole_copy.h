// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_WHOLE_COPY_H
#define VELMARCON_PACKAGING_WHOLE_COPY_H

#include <string>
#include <system_error>

/// Who may do what with a copy.
enum class CopyAccess {
    kAsNewFile,  ///< what the mode of the source lets them do, less what the user withholds from new files
    kAsSource    ///< the same as with the source: owner, mode, access control list, attributes
};

/// Copies the file `source` to `destination`. The copy gets that name when it is complete and on disk, and
/// only if the name is free. A symbolic link at `source` is followed. Returns file_exists if the name is
/// taken; `source` is never changed.
[[nodiscard]] std::error_code CopyWhole(const std::string& source, const std::string& destination,
                                        CopyAccess access = CopyAccess::kAsNewFile);

#endif  // VELMARCON_PACKAGING_WHOLE_COPY_H
