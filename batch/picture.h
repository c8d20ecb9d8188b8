// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PICTURE_H
#define VELMARCON_BATCH_PICTURE_H

#include <cstdint>
#include <span>
#include <string>

#include "batch/trees.h"

/// A picture that was found: a pair, by its RAW file, or a DNG that the camera wrote.
struct Picture {
    std::uint32_t tree = 0;  ///< its number
    std::string name;        ///< path in the tree's root
};

bool IsCameraDng(const Picture& picture);

/// The file that the picture is known by.
std::string InputOf(const Picture& picture, std::span<const Tree> trees);

/// The DNG that is to be made of it.
std::string DngOf(const Picture& picture, std::span<const Tree> trees);

/// `path` without its extension: what the files of a picture have in common.
std::string WithoutExtension(const std::string& path);

/// The name in `path`, without its folder.
std::string NameIn(const std::string& path);

/// The folder in `path`, with its separator.
std::string FolderIn(const std::string& path);

#endif  // VELMARCON_BATCH_PICTURE_H
