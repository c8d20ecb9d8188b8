// SPDX-License-Identifier: MIT
#include "app/input_discovery.h"

#include <cstdio>
#include <utility>

#include "base/error_codes.h"
#include "system/folder_listing.h"
#include "system/input_file.h"
#include "system/path_names.h"
#include "system/replacement_in_steps.h"
#include "system/system_error.h"

namespace {

using path_names::Extension;
using path_names::kDngExtension;
using path_names::kRawExtension;

/// Length in bytes; 0 if the file can't be opened.
std::uint64_t FileSize(const std::string& path) {
    InputFile file;
    return file.Open(path) ? file.size() : 0;
}

bool IsWanted(const std::string& name, const std::string& path) {
    const std::string extension = Extension(name);
    return extension == kRawExtension || (extension == kDngExtension && FileSize(path) == kCameraDngSize);
}

/// Whether `name` is that of the old copy of a DNG.
bool IsSetAside(const std::string& name) {
    const auto dng = path_names::NameOfOld(name);
    return dng && dng->ends_with("." + std::string(kDngExtension));
}

/// Restores DNGs from old copies that interrupted runs left, and adds the wanted ones to `names`.
void PutBack(const std::string& folder, const std::vector<std::string>& set_aside,
             std::vector<std::string>& names) {
    for (const std::string& old : set_aside) {
        const std::string name = path_names::NameOfOld(old).value_or("");
        if (replacement_in_steps::PutBack(folder + name) && IsWanted(name, folder + name)) {
            names.push_back(name);
        }
    }
}

InputError ResolveFolder(const std::string& path, InputFiles& input) {
    const std::string folder = path_names::WithSeparator(path);
    input = {folder, GetFileList(folder)};
    return {input.names.empty() ? kNoRawFiles : kNoError, ""};
}

/// The file at `path`, or at `path` with an extension appended; empty if there is none.
std::string FindFile(const std::string& path) {
    const std::string raw = path_names::WithExtension(path, kRawExtension);
    const std::string dng = path_names::WithExtension(path, kDngExtension);
    for (const std::string& file : {path, raw, dng}) {
        if (Extension(file) == kDngExtension) {
            (void)replacement_in_steps::PutBack(file);
        }
        if (isfile(file.c_str())) {
            return file;
        }
    }
    return "";
}

}  // namespace

bool isdir(const char* path) {
    return FolderListing(path).IsOpen();
}

bool isfile(const char* path) {
    InputFile file;
    return file.Open(path);
}

std::vector<std::string> GetFileList(const std::string& folder) {
    std::vector<std::string> names;
    FolderListing listing(folder);
    if (!listing.IsOpen()) {
        return names;
    }
    std::vector<std::string> set_aside;
    while (auto name = listing.NextFile()) {
        if (IsWanted(*name, folder + *name)) {
            names.push_back(*std::move(name));
        } else if (IsSetAside(*name)) {
            set_aside.push_back(*std::move(name));
        }
    }
    PutBack(folder, set_aside, names);
    if (listing.error()) {
        // The listed files are still converted, but the user must know that the list is incomplete.
        std::printf("%s: folder not read to its end: %s\n", folder.c_str(),
                    system_error::Text(listing.error()));
    }
    return names;
}

InputError ResolveInput(const std::string& path, InputFiles& input) {
    if (isdir(path.c_str())) {
        return ResolveFolder(path, input);
    }
    const std::string file = FindFile(path);
    const std::string name = path_names::FileNamePart(file);
    const std::string extension = Extension(name);
    if (extension != kRawExtension && extension != kDngExtension) {
        return {kBadInput, ""};
    }
    if (extension == kDngExtension && FileSize(file) > kLargestSingleDng) {
        return {kNotACameraDng, name};
    }
    input = {path_names::FolderPart(file), {name}};
    return {};
}

InputFiles CurrentFolder() {
    return {"./", GetFileList(".")};
}
