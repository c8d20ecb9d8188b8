// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_INPUT_DISCOVERY_H
#define VELMARCON_APP_INPUT_DISCOVERY_H

#include <cstdint>
#include <string>
#include <vector>

/// Size in bytes of every DNG that the camera writes. A search of a folder accepts no other size, so it never
/// finds the DNGs that this program wrote.
constexpr std::uint64_t kCameraDngSize = 10575296;

/// A DNG named with -i counts as one of the camera's up to this many bytes.
constexpr std::uint64_t kLargestSingleDng = 15000000;

/// Whether `path` can be opened as a folder.
[[nodiscard]] bool isdir(const char* path);

/// Whether `path` can be opened for reading as a file.
[[nodiscard]] bool isfile(const char* path);

/// The names, without `folder`, of the RAW files and of the camera DNGs (recognised by their exact size) in
/// `folder`, in the order in which the system lists them. Extensions must be in upper case. `folder` ends in
/// a separator or is "."; the names are appended to it without a separator. A folder that can't be read gives
/// an empty list.
std::vector<std::string> GetFileList(const std::string& folder);

/// The images of a run.
struct InputFiles {
    std::string folder;              ///< ends in a separator; empty for a bare file name
    std::vector<std::string> names;  ///< without folder, with extension "RAW" or "DNG"
};

/// The error that ends a run whose input can't be resolved.
struct InputError {
    int code = 0;      ///< 0: none
    std::string name;  ///< of the file concerned, without folder; empty if the message names no file
};

/// Resolves `path`, the value of -i: a folder, a RAW or DNG file, or such a file without its extension.
[[nodiscard]] InputError ResolveInput(const std::string& path, InputFiles& input);

/// The input of a run without -i: the RAW files of the current folder. DNGs are not found there, because "."
/// is put in front of their names without a separator.
InputFiles CurrentFolder();

#endif  // VELMARCON_APP_INPUT_DISCOVERY_H
