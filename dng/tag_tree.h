// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_TAG_TREE_H
#define VELMARCON_DNG_TAG_TREE_H

#include "dng/ifd.h"

/// The tags of one DNG file.
struct TagTree {
    IFD ifd0;      ///< the preview and data about the whole picture; without a preview also the raw image
    IFD sub_ifd;   ///< the raw image next to a preview; otherwise empty
    IFD exif_ifd;  ///< the shooting data
};

#endif  // VELMARCON_DNG_TAG_TREE_H
