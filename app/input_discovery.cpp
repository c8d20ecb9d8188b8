// SPDX-License-Identifier: MIT
#include "app/input_discovery.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "app/error_codes.h"
#include "input/input_file.h"

namespace {

constexpr const char* kRaw = "RAW";
constexpr const char* kDng = "DNG";

/// Bytes of every DNG that the camera writes. A search of a folder takes no other: so it never finds our own.
constexpr std::uint64_t kCameraDngSize = 10575296;
/// Bytes up to which a DNG named by -i is taken for one of the camera's.
constexpr std::uint64_t kLargestSingleDng = 15000000;

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

/// Length in bytes; 0 when the file can't be opened.
std::uint64_t FileSize(const std::string& path) {
    InputFile file;
    return file.Open(path) ? file.size() : 0;
}

/// Not every file system's listing tells the type. A symbolic link counts as a file, whatever it points to.
bool IsFolder(DIR* listing, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_DIR;
    }
    struct stat status = {};
    return ::fstatat(::dirfd(listing), &entry.d_name[0], &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

bool IsWanted(const std::string& name, const std::string& path) {
    const std::string extension = Extension(name);
    return extension == kRaw || (extension == kDng && FileSize(path) == kCameraDngSize);
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

/// The file that `path` names, with its extension if that was left out; empty when there is none.
std::string FindFile(const std::string& path) {
    for (const std::string extension : {"", ".RAW", ".DNG"}) {
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
    return OpenFolder(::opendir(path)) != nullptr;
}

bool isfile(const char* path) {
    InputFile file;
    return file.Open(path);
}

std::vector<std::string> GetFileList(const std::string& folder) {
    std::vector<std::string> names;
    const OpenFolder listing(::opendir(folder.c_str()));
    if (!listing) {
        return names;
    }
    errno = 0;
    while (const dirent* entry = ::readdir(listing.get())) {
        const std::string name = entry->d_name;
        if (!IsFolder(listing.get(), *entry) && IsWanted(name, folder + name)) {
            names.push_back(name);
        }
        errno = 0;
    }
    if (errno != 0) {
        // What was listed is converted all the same; but nobody should take it for all that there is.
        std::printf("%s: folder not read to its end: %s\n", folder.c_str(), std::strerror(errno));
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
