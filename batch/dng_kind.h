// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_DNG_KIND_H
#define VELMARCON_BATCH_DNG_KIND_H

#include <cstdint>
#include <string>

/// What a DNG among the pictures is.
enum class DngKind : std::uint8_t {
    kCameras,          ///< as long as those that the camera writes: a picture, whatever is in it
    kOfChangedLength,  ///< the camera's, which another program has made longer or shorter, but with all
                       ///< pixels
    kCut,              ///< too short for any of the camera's
    kOther             ///< none of the camera's, as far as it can be read
};

/// Looks into the file at `path` only if its length leaves a doubt.
DngKind KindOfDng(const std::string& path);

#endif  // VELMARCON_BATCH_DNG_KIND_H
