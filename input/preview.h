// SPDX-License-Identifier: MIT
#ifndef VELMARCON_INPUT_PREVIEW_H
#define VELMARCON_INPUT_PREVIEW_H

#include <cstdint>
#include <span>
#include <vector>

/// The grey preview of an image: 320 x 240 single pixels of the sensor data through a square-root curve that
/// maps its 14 bits to 0...255. Samples stand in even rows and odd columns, so that all of them are green.
class PreviewSampler {
  public:
    static constexpr std::int32_t kWidth = 320;   ///< pixels
    static constexpr std::int32_t kHeight = 240;  ///< pixels
    static constexpr std::int32_t kBytesPerPixel = 3;
    static constexpr std::int32_t kSize = kWidth * kHeight * kBytesPerPixel;  ///< bytes

    /// Samples an image of `width` x `height` pixels into `preview`, which has kSize bytes. Samples that
    /// would lie outside the image are not taken; their bytes stay as they are.
    PreviewSampler(std::int32_t width, std::int32_t height, std::span<std::uint8_t> preview);

    /// Takes image row `y`, top to bottom; rows without samples are passed over.
    void AddRow(std::int32_t y, std::span<const std::uint16_t> row);

  private:
    std::vector<std::int32_t> columns_;  ///< of the samples in every sampled row
    std::vector<std::int32_t> rows_;     ///< sampled
    std::size_t next_row_ = 0;           ///< into rows_
    std::span<std::uint8_t> unfilled_;   ///< rest of the preview
};

#endif  // VELMARCON_INPUT_PREVIEW_H
