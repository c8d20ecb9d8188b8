// SPDX-License-Identifier: MIT
#include "app/input_discovery.h"

#include <cstdio>
#include <string_view>
#include <utility>

#include "base/error_codes.h"
#include "system/file_system.h"
#include "system/folder_listing.h"
#include "system/input_file.h"
#include "system/replacement_in_steps.h"

namespace {

constexpr const char* kRaw = "RAW";
constexpr const char* kDng = "DNG";

/// A DNG named with -i counts as one of the camera's up to this many bytes.
constexpr std::uint64_t kLargestSingleDng = 15000000;

/// Length in bytes; 0 if the file can't be opened.
std::uint64_t FileSize(const std::string& path) {
    InputFile file;
    return file.Open(path) ? file.size() : 0;
}

bool IsWanted(const std::string& name, const std::string& path) {
    const std::string extension = Extension(name);
    return extension == kRaw || (extension == kDng && FileSize(path) == kCameraDngSize);
}

/// Whether `name` is one that a DNG temporarily gets while a new one replaces it.
bool IsSetAside(const std::string& name) {
    return name.ends_with("." + std::string(kDng) + std::string(replacement_in_steps::kOldEnd));
}

/// Restores DNGs that a run set aside and then did not replace, and adds the wanted ones to `names`.
void PutBack(const std::string& folder, const std::vector<std::string>& set_aside,
             std::vector<std::string>& names) {
    for (const std::string& old : set_aside) {
        const std::string name = old.substr(0, old.size() - replacement_in_steps::kOldEnd.size());
        if (replacement_in_steps::PutBack(folder + name) && IsWanted(name, folder + name)) {
            names.push_back(name);
        }
    }
}

InputError ResolveFolder(const std::string& path, InputFiles& input) {
    const std::string folder = WithSeparator(path);
    input = {folder, GetFileList(folder)};
    return {input.names.empty() ? kNoRawFiles : kNoError, ""};
}

std::string FileNamePart(const std::string& path) {
    return path.substr(path.find_last_of(kSeparators) + 1);
}

std::string FolderPart(const std::string& path) {
    return path.substr(0, path.find_last_of(kSeparators) + 1);
}

/// The file at `path`, or at `path` with an extension appended; empty if there is none.
std::string FindFile(const std::string& path) {
    for (const std::string extension : {"", ".RAW", ".DNG"}) {
        if (Extension(path + extension) == kDng) {
            (void)replacement_in_steps::PutBack(path + extension);
        }
        if (isfile((path + extension).c_str())) {
            return path + extension;
        }
    }
    return "";
}

}  // namespace

std::string WithSeparator(std::string folder) {
    if (!folder.empty() && std::string_view(kSeparators).find(folder.back()) == std::string_view::npos) {
        folder += '/';
    }
    return folder;
}

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
    if (listing.error() != 0) {
        // The listed files are still converted, but the user must know that the list is incomplete.
        std::printf("%s: folder not read to its end: %s\n", folder.c_str(),
                    file_system::ErrorText(listing.error()));
    }
    return names;
}

InputError ResolveInput(const std::string& path, InputFiles& input) {
    if (isdir(path.c_str())) {
        return ResolveFolder(path, input);
    }
    const std::string file = FindFile(path);
    const std::string name = FileNamePart(file);
    const std::string extension = Extension(name);
    if (extension != kRaw && extension != kDng) {
        return {kBadInput, ""};
    }
    if (extension == kDng && FileSize(file) > kLargestSingleDng) {
        return {kNotACameraDng, name};
    }
    input = {FolderPart(file), {name}};
    return {};
}

InputFiles CurrentFolder() {
    return {"./", GetFileList(".")};
}

std::string Extension(const std::string& name) {
    return name.substr(name.rfind('.') + 1);
}

std::string BaseName(const std::string& name) {
    return name.substr(0, name.rfind('.'));
}
