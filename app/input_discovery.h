// SPDX-License-Identifier: MIT
#ifndef VELMARCON_APP_INPUT_DISCOVERY_H
#define VELMARCON_APP_INPUT_DISCOVERY_H

#include <cstdint>
#include <string>
#include <vector>

/// The characters that end a folder's part of a path.
constexpr const char* kSeparators = "\\/";

/// Bytes of every DNG that the camera writes. A search of a folder takes no other: so it never finds our own.
constexpr std::uint64_t kCameraDngSize = 10575296;

/// `folder` with a separator at its end; an empty text stays empty.
std::string WithSeparator(std::string folder);

/// Whether `path` can be opened as a folder.
bool isdir(const char* path);

/// Whether `path` can be opened for reading as a file.
bool isfile(const char* path);

/// The names, without `folder`, of the RAW files and of the DNGs that a camera wrote (known by their exact
/// length) in `folder`, in the order in which the system lists them. Extensions count in upper case only.
/// `folder` ends in a separator or is "."; the names are appended to it as it stands. A folder that can't be
/// read gives an empty list.
std::vector<std::string> GetFileList(const std::string& folder);

/// What a run works on.
struct InputFiles {
    std::string folder;              ///< with its separator; empty for a bare file name
    std::vector<std::string> names;  ///< without folder, with extension "RAW" or "DNG"
};

/// The error that ends a run whose input can't be resolved.
struct InputError {
    int code = 0;      ///< 0: none
    std::string name;  ///< of the file concerned, without folder; empty when the line names none
};

/// Finds what `path`, the value of -i, stands for: a folder, a RAW or DNG file, or one of these without its
/// extension.
InputError ResolveInput(const std::string& path, InputFiles& input);

/// What a run without -i works on: the RAW files of the current folder. Its DNGs are not found, because "."
/// goes in front of their names without a separator.
InputFiles CurrentFolder();

/// The text behind the last "." of `name`; all of it when there is none.
std::string Extension(const std::string& name);

/// The text before the last "." of `name`; all of it when there is none.
std::string BaseName(const std::string& name);

#endif  // VELMARCON_APP_INPUT_DISCOVERY_H
