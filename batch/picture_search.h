// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PICTURE_SEARCH_H
#define VELMARCON_BATCH_PICTURE_SEARCH_H

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "batch/picture.h"

/// What a search of the trees has found.
struct FoundPictures {
    std::vector<Picture> pictures;               ///< tree by tree, in the order of their names
    std::vector<std::string> unread;             ///< "PATH: REASON" of each folder that could not be read
    std::vector<std::string> excluded;           ///< output folders below a root, which are not searched
    std::vector<std::string> small;              ///< names that would be pictures in capital letters
    std::vector<std::string> cut;                ///< DNGs that are too short for any of the camera's
    std::vector<std::string> of_changed_length;  ///< the camera's, made longer or shorter by another program
    std::vector<std::string> jpegs;      ///< those without a RAW file or DNG, in folders that have RAW files
    std::size_t of_macos = 0;            ///< files ._X of macOS, which have the extension of a picture
    std::vector<std::string> none;       ///< files that were named one by one and are no picture's
    std::vector<std::string> not_found;  ///< names of a list that are no picture
};

/// Searches all trees, or looks at what is asked for of them. Links to folders are not followed, so there are
/// no circles; a link to a file is a file. A DNG is the camera's if it has the length of those.
FoundPictures FindPictures(std::span<const Tree> trees);

/// Leaves those pictures that `list` names: paths, each ended by a NUL, of any file of a picture. Returns the
/// paths that name none, sorted; links of a folder that is there are followed in them.
std::vector<std::string> KeepListed(const std::string& list, std::span<const Tree> trees,
                                    FoundPictures& found);

/// Sorts by the time of the inputs, the newest first.
void SortNewestFirst(std::span<const Tree> trees, std::vector<Picture>& pictures);

#endif  // VELMARCON_BATCH_PICTURE_SEARCH_H
