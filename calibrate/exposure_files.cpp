// SPDX-License-Identifier: MIT
#include "calibrate/exposure_files.h"

#include <algorithm>
#include <utility>

#include "app/input_discovery.h"
#include "errors/error_handler.h"
#include "input/read_input_data.h"
#include "system/file_system.h"
#include "system/path_names.h"

namespace {

std::string WhyNothingIsThere(const std::string& path) {
    auto kind = file_system::Kind::kNothing;
    (void)file_system::KindOf(path, kind);
    if (kind == file_system::Kind::kNothing) {
        return ": there is no such file or folder";
    }
    return kind == file_system::Kind::kPlainFile ? ": this is not a RAW file"
                                                 : ": there is no RAW file in this folder";
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
