// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_RAW_LAYOUT_H
#define VELMARCON_INPUT_RAW_LAYOUT_H

#include <cstddef>
#include <cstdint>

#include "base/pixel.h"

/// Layout of the camera's RAW and BIA files: a bare dump of little-endian 16-bit words, of which 14 bits are
/// used.
namespace raw_layout {

constexpr std::int32_t kImageWidth = 3968;   ///< pixels
constexpr std::int32_t kImageHeight = 2646;  ///< pixels
constexpr std::int32_t kPixelCount = kImageWidth * kImageHeight;

constexpr std::size_t kLeadingWords = 54;  ///< before the first row; skipped
constexpr std::size_t kRowWords = 3976;    ///< the last 8 are skipped
constexpr std::size_t kFileWords = kLeadingWords + kRowWords * kImageHeight;
constexpr std::size_t kFileBytes = kFileWords * sizeof(Pixel);

/// Index of the first word of row `y`.
constexpr std::size_t RowStart(std::size_t y) {
    return kLeadingWords + y * kRowWords;
}

}  // namespace raw_layout

#endif  // VELMARCON_INPUT_RAW_LAYOUT_H
