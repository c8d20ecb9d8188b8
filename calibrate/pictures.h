// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_PICTURES_H
#define VELMARCON_CALIBRATE_PICTURES_H

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/pixel.h"

/// An 8-bit grey picture.
struct GreyPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

/// Maps raw units to grey: `black` and below become 0, `white` and above 255.
struct GreyScale {
    float black = 0;
    float white = 1;

    std::uint8_t Grey(float value) const;
};

/// A whole frame, each square of `reduction` x `reduction` pixels averaged.
GreyPicture Reduced(std::span<const Pixel> frame, int reduction, const GreyScale& scale);

/// The part of a frame that begins at `column`, `row`, enlarged. Pixels outside the frame are black.
GreyPicture Enlarged(std::span<const Pixel> frame, int column, int row, int width, int height,
                     int enlargement, const GreyScale& scale);

/// Pictures of equal height next to each other, with white gaps.
GreyPicture SideBySide(std::span<const GreyPicture> pictures);

/// Writes pictures and plots into a folder, using gnuplot.
class PictureWriter {
  public:
    explicit PictureWriter(std::string folder) : folder_(std::move(folder)) {}

    /// Both return whether the file was written. On failure the run leaves no file of that name.
    [[nodiscard]] bool WritePng(const std::string& name, const GreyPicture& picture);
    [[nodiscard]] bool WriteLevelPlot(const std::string& name, std::span<const float> levels);

  private:
    [[nodiscard]] bool RunScript(const std::string& script, const std::string& data, const std::string& name);

    std::string folder_;  // ends in a separator
};

#endif  // VELMARCON_CALIBRATE_PICTURES_H
