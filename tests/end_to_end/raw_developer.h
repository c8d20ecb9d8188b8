// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_RAW_DEVELOPER_H
#define VELMARCON_TESTS_END_TO_END_RAW_DEVELOPER_H

#include <cstdint>
#include <string>
#include <vector>

#include "samples/rgb_image.h"

namespace end_to_end {

/// What LibRaw reads from a DNG before developing it.
struct UnpackedRaw {
    int width = 0;   ///< pixels
    int height = 0;  ///< rows
    std::vector<std::uint16_t> pixels;
    std::vector<std::uint8_t> thumbnail;  ///< red, green, blue; empty if the file has none
};

/// Reads the file at `path`; the test fails if LibRaw does.
UnpackedRaw Unpack(const std::string& path);

/// A photograph developed at half the sensor's size, in linear light and with the primaries of sRGB.
class DevelopedRaw {
  public:
    /// Develops a photograph with the defaults of a first look: the camera's white balance, the file's colour
    /// matrices and white level, no automatic brightness. The test fails if LibRaw does.
    explicit DevelopedRaw(const std::string& path);

    /// The mean over `width` x `height` sensor pixels, starting at (`x`, `y`).
    samples::LinearRgb Mean(int x, int y, int width, int height) const;

    /// The mean difference of all samples, in steps of 8-bit samples.
    double MeanDifference(const DevelopedRaw& other) const;

  private:
    int width_ = 0;
    std::vector<std::uint16_t> samples_;
};

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_RAW_DEVELOPER_H
