// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_PREVIEW_H
#define VELMARCON_INPUT_PREVIEW_H

#include <cstdint>
#include <span>
#include <vector>

#include "base/pixel.h"

/// The grey preview of an image: 320 x 240 single pixels of the sensor data, mapped from 14 bits to 0...255
/// by a square-root curve. The samples lie in even rows and odd columns, so all of them are green.
class PreviewSampler {
  public:
    static constexpr std::int32_t kWidth = 320;   ///< pixels
    static constexpr std::int32_t kHeight = 240;  ///< pixels
    static constexpr std::int32_t kBytesPerPixel = 3;
    static constexpr std::int32_t kSize = kWidth * kHeight * kBytesPerPixel;  ///< bytes

    /// Samples an image of `width` x `height` pixels into `preview`, which has kSize bytes. Samples that
    /// would lie outside the image are not taken; their bytes are left unchanged.
    PreviewSampler(std::int32_t width, std::int32_t height, std::span<std::uint8_t> preview);

    /// Takes image row `y`; the rows must come from top to bottom. Rows without samples are ignored.
    void AddRow(std::int32_t y, std::span<const Pixel> row);

  private:
    std::vector<std::int32_t> columns_;  ///< columns of the samples in every sampled row
    std::vector<std::int32_t> rows_;     ///< the sampled rows
    std::size_t next_row_ = 0;           ///< index into rows_
    std::span<std::uint8_t> unfilled_;   ///< the rest of the preview
};

#endif  // VELMARCON_INPUT_PREVIEW_H
