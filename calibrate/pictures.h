// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_PICTURES_H
#define VELMARCON_CALIBRATE_PICTURES_H

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

/// A grey picture of 8 bits.
struct GreyPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

/// Turns raw units into grey: `black` and below become 0, `white` and above 255.
struct GreyScale {
    float black = 0;
    float white = 1;

    std::uint8_t Grey(float value) const;
};

/// A whole frame, each square of `reduction` x `reduction` pixels averaged.
GreyPicture Reduced(std::span<const std::uint16_t> frame, int reduction, const GreyScale& scale);

/// The part of a frame from `column`, `row` on, enlarged. What lies outside the frame is black.
GreyPicture Enlarged(std::span<const std::uint16_t> frame, int column, int row, int width, int height,
                     int enlargement, const GreyScale& scale);

/// Pictures of one height next to each other, with a white gap.
GreyPicture SideBySide(std::span<const GreyPicture> pictures);

/// Writes pictures and plots of a folder with gnuplot.
class PictureWriter {
  public:
    explicit PictureWriter(std::string folder) : folder_(std::move(folder)) {}

    /// Both return whether the file is there; it is whole then, and else there is none of that name by this
    /// run.
    bool WritePng(const std::string& name, const GreyPicture& picture);
    bool WriteLevelPlot(const std::string& name, std::span<const float> levels);

  private:
    bool RunScript(const std::string& script, const std::string& data, const std::string& name);

    std::string folder_;  // with its separator
};

#endif  // VELMARCON_CALIBRATE_PICTURES_H
