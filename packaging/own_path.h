// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_OWN_PATH_H
#define VELMARCON_PACKAGING_OWN_PATH_H

#include <filesystem>

/// The file of the running program, with all links followed: the rest of the package is found from there,
/// wherever it was installed. Where the system does not tell, the place that the build was configured for.
std::filesystem::path OwnPath();

#endif  // VELMARCON_PACKAGING_OWN_PATH_H
