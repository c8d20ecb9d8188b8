// SPDX-License-Identifier: MIT
#include "app/reach.h"

#include <filesystem>
#include <system_error>

#include "app/input_discovery.h"
#include "system/file_system.h"
#include "system/system_path.h"

namespace {

/// The folder of `file`; "./" instead of an empty name, which cannot be opened.
std::string FolderOf(const std::string& file) {
    const std::string folder = file_system::FolderOf(file);
    return folder.empty() ? "./" : folder;
}

/// The folder of the files whose paths begin with `prefix`. `prefix` ends in a separator, but that may be a
/// backslash: the options treat it as a separator, the system as a part of a file name.
std::string FolderOfPrefix(const std::string& prefix) {
    return FolderOf(prefix + "name");
}

/// Adds `path`, unless it is certain that it is not a link.
void AddLink(const std::string& path, std::vector<std::string>& links) {
    namespace fs = std::filesystem;
    std::error_code error;
    const auto type = fs::symlink_status(system_path::ToSystem(path), error).type();
    if (type != fs::file_type::not_found && type != fs::file_type::regular) {
        links.push_back(path);
    }
}

}  // namespace

Reach ReachOf(const RunSettings& settings, const std::string& sensor_database) {
    const std::string& input = settings.input.folder;
    const std::string& output = settings.output_folder.empty() ? input : settings.output_folder;
    Reach reach = {{FolderOfPrefix(input)}, {FolderOfPrefix(output)}, {}};
    for (const std::string& name : settings.input.names) {
        const std::string base = BaseName(name);
        for (const char* extension : {".RAW", ".JPG", ".BIA", ".DNG"}) {
            AddLink(input + base + extension, reach.read_files);
        }
        if (output != input) {
            AddLink(output + base + ".DNG", reach.read_files);  // to tell whether the DNG exists
        }
    }
    if (settings.sensor_fix) {
        reach.written_folders.push_back(FolderOf(sensor_database));
        std::string target;
        if (file_system::FollowLinks(sensor_database, target) == 0 && target != sensor_database) {
            reach.written_folders.push_back(FolderOf(target));
        }
    }
    return reach;
}
