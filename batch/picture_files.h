// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PICTURE_FILES_H
#define VELMARCON_BATCH_PICTURE_FILES_H

#include <optional>
#include <string>

#include "batch/proof/same_picture.h"

/// The files of a picture.
struct PictureFiles {
    /// Of the picture that is known by the file `input_path`: its RAW file, or the camera DNG.
    explicit PictureFiles(const std::string& input_path);

    /// Of a pair.
    std::string Jpg() const { return folder + base + ".JPG"; }
    /// Of a pair; there need not be one.
    std::string DarkFrame() const { return folder + base + ".BIA"; }
    /// The file that tells which picture it is: the JPEG of a pair, or else the camera DNG.
    std::string Identifying() const { return is_camera_dng ? input : Jpg(); }

    std::string input;
    std::string folder;  ///< of the input, with its separator
    std::string base;    ///< the input's name without extension
    bool is_camera_dng = false;
};

/// Of the picture itself; nothing when its files do not tell.
std::optional<PictureIdentity> IdentityOf(const PictureFiles& files);

#endif  // VELMARCON_BATCH_PICTURE_FILES_H
