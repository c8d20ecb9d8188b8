// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_EXISTING_FOLDER_H
#define VELMARCON_BATCH_EXISTING_FOLDER_H

#include <string>

/// The innermost folder of `path` that exists, or that path itself. `path` must be absolute.
std::string ExistingFolder(std::string path);

#endif  // VELMARCON_BATCH_EXISTING_FOLDER_H
