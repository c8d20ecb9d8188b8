// SPDX-License-Identifier: MIT
#include "packaging/databases.h"

#include <system_error>

#include "packaging/data_folder.h"

namespace {

namespace fs = std::filesystem;

/// Seen from the folder that the package was installed below.
constexpr const char* kPackagedDatabases = "share/velmarcon";

std::string Reason(int error) {
    return std::generic_category().message(error);
}

}  // namespace

Databases PrepareDatabases(const std::filesystem::path& installed) {
    const fs::path own = DataFolder();
    if (const int error = MakeDataFolder(own); error != 0) {
        return {installed / kPackagedDatabases,
                own.empty() ? "neither XDG_DATA_HOME nor a home folder" : own.string() + ": " + Reason(error),
                {}};
    }
    const fs::path packaged = installed / kPackagedDatabases / "lensdb.ini";
    if (const int error = CopyLensDatabase(packaged, own); error != 0) {
        return {own, "", {packaged.string() + ": not copied to " + own.string() + ": " + Reason(error)}};
    }
    return {own, "", {}};
}
