// SPDX-License-Identifier: MIT
#include <filesystem>
#include <string>
#include <vector>

#include "calibrate/calibrate_run.h"
#include "packaging/data_folder.h"
#include "system/path_names.h"
#include "system/posix/program.h"

namespace {

/// The database that the installed command uses.
DefaultDatabase InDataFolder() {
    const std::filesystem::path folder = DataFolder();
    if (folder.empty()) {
        return {};
    }
    return {(folder / path_names::kSensorDatabase).string(), [folder] { return MakeDataFolder(folder); }};
}

}  // namespace

int main(int argc, char* argv[]) {
    const std::vector<std::string> arguments = program::Begin(argc, argv);
    return RunCalibrate(arguments, InDataFolder());
}
