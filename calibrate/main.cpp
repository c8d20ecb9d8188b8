// SPDX-License-Identifier: MIT
#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "calibrate/calibrate_run.h"
#include "packaging/data_folder.h"
#include "system/path_names.h"
#include "system/pixel_memory.h"
#include "system/posix/write_signals.h"
#include "system/standard_streams.h"

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
    IgnoreWriteSignals();
    FillMissingStandardStreams();
    pixel_memory::RetainFreedMemory();
    const std::span<char*> all(argv, static_cast<std::size_t>(argc));
    std::vector<std::string> arguments;
    for (const char* argument : all.subspan(all.empty() ? 0 : 1)) {
        arguments.emplace_back(argument);
    }
    return RunCalibrate(arguments, InDataFolder());
}
