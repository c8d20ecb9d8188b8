// SPDX-License-Identifier: MIT
#include "app/reach.h"

#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "system/file_system.h"
#include "system/path_names.h"
#include "system/system_path.h"

namespace {

/// Extensions of the files in the input folder that a run may read for one image.
constexpr std::array kExtensions = {path_names::kRawExtension, path_names::kJpegExtension,
                                    path_names::kDarkFrameExtension, path_names::kDngExtension};

/// The folder of `file`; "./" instead of an empty name, which cannot be opened.
std::string FolderOf(const std::string& file) {
    const std::string folder = path_names::SystemFolderPart(file);
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
        const std::string base = path_names::BaseName(name);
        for (const std::string_view extension : kExtensions) {
            AddLink(input + path_names::WithExtension(base, extension), reach.read_files);
        }
        if (output != input) {
            // To tell whether the DNG exists.
            AddLink(output + path_names::WithExtension(base, path_names::kDngExtension), reach.read_files);
        }
    }
    if (settings.sensor_fix) {
        reach.written_folders.push_back(FolderOf(sensor_database));
        std::string target;
        if (!file_system::FollowLinks(sensor_database, target) && target != sensor_database) {
            reach.written_folders.push_back(FolderOf(target));
        }
    }
    return reach;
}
