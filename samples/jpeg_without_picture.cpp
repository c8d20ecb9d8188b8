// SPDX-License-Identifier: MIT
// EncodeJpeg for builds without libjpeg: velmarcon reads nothing between the first and the last marker.
#include "samples/camera_jpeg.h"

namespace samples {

std::vector<std::uint8_t> EncodeJpeg(const RgbImage& image, int /*quality*/) {
    if (image.width < 1 || image.height < 1) {
        return {};
    }
    return {0xFF, 0xD8, 0xFF, 0xD9};
}

}  // namespace samples
