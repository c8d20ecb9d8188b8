// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_OWN_PATH_H
#define VELMARCON_PACKAGING_OWN_PATH_H

#include <filesystem>

/// The file of the running program, with all links followed, so that the rest of the package is found
/// wherever it was installed. If the system does not tell, this is the path that the build was configured
/// for.
std::filesystem::path OwnPath();

#endif  // VELMARCON_PACKAGING_OWN_PATH_H
