// SPDX-License-Identifier: MIT
#include "packaging/databases.h"

#include <system_error>

#include "packaging/data_folder.h"
#include "system/system_error.h"

namespace {

namespace fs = std::filesystem;

/// Seen from the folder that the package was installed below.
constexpr const char* kPackagedDatabases = "share/velmarcon";

}  // namespace

Databases PrepareDatabases(const std::filesystem::path& installed) {
    const fs::path own = DataFolder();
    if (const std::error_code error = MakeDataFolder(own)) {
        return {installed / kPackagedDatabases,
                own.empty() ? "neither XDG_DATA_HOME nor a home folder"
                            : own.string() + ": " + system_error::Text(error),
                {}};
    }
    const fs::path packaged = installed / kPackagedDatabases / "lensdb.ini";
    if (const std::error_code error = CopyLensDatabase(packaged, own)) {
        return {own,
                "",
                {packaged.string() + ": not copied to " + own.string() + ": " + system_error::Text(error)}};
    }
    return {own, "", {}};
}
