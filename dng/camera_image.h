// SPDX-License-Identifier: MIT
#ifndef VELMARCON_DNG_CAMERA_IMAGE_H
#define VELMARCON_DNG_CAMERA_IMAGE_H

#include <cstdint>
#include <vector>

#include "base/pixel.h"
#include "dng/ifd.h"
#include "system/input_file.h"

/// The images of a camera DNG.
struct CameraImage {
    std::vector<std::uint8_t> preview;  ///< 320 x 240 pixels of 3 bytes
    std::vector<Pixel> pixels;          ///< width x height 14-bit values, row by row
    int width = 0;                      ///< pixels
    int height = 0;                     ///< pixels
};

/// Reads the images that the IFDs describe: the preview of `preview_ifd`, padded with zeros or cut to its
/// fixed size, and the raw image of `raw_ifd`, 8 bits through a linearization table or plain 16 bits. Returns
/// false if a tag is missing, if the raw image is stored in another way, if the file ends before the raw
/// image does, or if both images together claim more bytes than the file has.
[[nodiscard]] bool ReadImages(InputFile& file, const IFD& preview_ifd, const IFD& raw_ifd,
                              CameraImage& image);

#endif  // VELMARCON_DNG_CAMERA_IMAGE_H
