// SPDX-License-Identifier: MIT
#include "calibrate/exposure_files.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "app/input_discovery.h"
#include "errors/error_handler.h"
#include "input/read_input_data.h"
#include "system/file_system.h"
#include "system/folder_listing.h"
#include "system/path_names.h"
#include "system/system_path.h"

namespace {

bool HoldsRawFiles(const std::string& folder) {
    FolderListing listing(folder);
    while (listing.IsOpen()) {
        const std::optional<std::string> name = listing.NextFile();
        if (!name) {
            break;
        }
        if (path_names::Extension(*name) == path_names::kRawExtension) {
            return true;
        }
    }
    return false;
}

/// The folders directly in `path` that hold RAW files, sorted, as text for a message; empty if there are
/// none.
std::string FoldersWithRawFiles(const std::string& path) {
    constexpr std::size_t most_named = 4;
    std::vector<std::string> folders;
    std::error_code error;
    for (std::filesystem::directory_iterator at(system_path::ToSystem(path), error), end; !error && at != end;
         at.increment(error)) {
        std::error_code unknown;
        const std::string folder = system_path::FromSystem(at->path());
        if (at->is_directory(unknown) && HoldsRawFiles(folder)) {
            folders.push_back(folder);
        }
    }
    std::ranges::sort(folders);
    std::string text;
    for (std::size_t i = 0; i < std::min(folders.size(), most_named); ++i) {
        text += (i == 0 ? "" : ", ") + folders[i];
    }
    return folders.size() > most_named ? text + " and others" : text;
}

std::string WhyNothingIsThere(const std::string& path) {
    auto kind = file_system::Kind::kNothing;
    (void)file_system::KindOf(path, kind);
    if (kind == file_system::Kind::kNothing) {
        return ": there is no such file or folder";
    }
    if (kind == file_system::Kind::kPlainFile) {
        return ": this is not a RAW file";
    }
    const std::string below = FoldersWithRawFiles(path);
    return ": there is no RAW file in this folder" +
           (below.empty() ? "" : "; name one that has some: " + below);
}

}  // namespace

std::vector<ExposureFile> FindExposures(std::span<const std::string> paths,
                                        std::vector<std::string>& problems) {
    std::vector<ExposureFile> found;
    for (const std::string& path : paths) {
        InputFiles files;
        const InputError error = ResolveInput(path, files);
        std::erase_if(files.names, [](const std::string& name) {
            return path_names::Extension(name) != path_names::kRawExtension;
        });
        if (error.code != 0 || files.names.empty()) {
            problems.push_back(path + WhyNothingIsThere(path));
            continue;
        }
        std::ranges::sort(files.names);
        for (const std::string& name : files.names) {
            const ExposureFile file = {files.folder, path_names::BaseName(name)};
            // A file that is named twice must not count twice.
            if (std::ranges::find(found, file) == found.end()) {
                found.push_back(file);
            }
        }
    }
    return found;
}

int ExposureLoader::Load(const ExposureFile& file) {
    ReadInputData record;
    record.ImageData = std::move(pixels_);
    constexpr bool verbose = false;
    constexpr bool subtract_dark_frame = false;
    const int error = record.ProcessFile(file.folder, file.base, verbose, subtract_dark_frame);
    pixels_ = std::move(record.ImageData);
    if (error != 0) {
        return ErrorHandler().PrintError(error,
                                         path_names::WithExtension(file.base, path_names::kRawExtension));
    }
    serial_ = record.Exif.SerialNumber;
    iso_ = record.Exif.ISOSpeedRatings;
    return 0;
}
