// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_DATABASES_H
#define VELMARCON_PACKAGING_DATABASES_H

#include <filesystem>
#include <string>
#include <vector>

/// The folder in which an installed command looks for its databases.
struct Databases {
    std::filesystem::path folder;
    std::string no_own_folder;  ///< why it is the package's, which is only read; empty: it is the user's own
    std::vector<std::string> remarks;  ///< what could not be done, a line each
};

/// Makes the user's own folder, with the package's lens database in it. `installed` is the folder that the
/// package was installed below. An account without a home, as a service has one, still gets the lenses of the
/// package.
Databases PrepareDatabases(const std::filesystem::path& installed);

#endif  // VELMARCON_PACKAGING_DATABASES_H
