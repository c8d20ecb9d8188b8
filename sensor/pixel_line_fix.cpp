// SPDX-License-Identifier: MIT
// Repairs defective sensor columns from their neighbours of the same colour:
// those two columns away and, for every other pixel, also those one row and one column away.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/pixel.h"
#include "sensor/sensdb.h"
#include "sensor/sensor_frame.h"
#include "sensor/sensorfixtools.h"

namespace {

/// One group of a defect list.
struct DefectGroup {
    std::uint16_t column;
    std::uint16_t first_row;
    std::uint16_t second_column;
    std::uint16_t end_row;

    /// Takes the four values of a group.
    explicit DefectGroup(const std::uint16_t* values)
        : column(values[0]), first_row(values[1]), second_column(values[2]), end_row(values[3]) {}

    /// Moves the group into the cropped frame, in 16 bits that may wrap: a position outside the frame ends up
    /// far outside. The end row is clamped but, unlike the first row, not moved.
    void MoveToCroppedFrame(int height) {
        using namespace sensor_frame;
        end_row = static_cast<std::uint16_t>(std::min<int>(end_row, height));
        first_row = static_cast<std::uint16_t>(first_row - kCroppedDefectRow);
        column = static_cast<std::uint16_t>(column - kCroppedDefectColumn);
        second_column = static_cast<std::uint16_t>(second_column - kCroppedDefectColumn);
    }
};

/// The neighbours of one pixel, by their distance in the buffer: in the first column a diagonal neighbour on
/// the left is the last pixel of the row above its own, and in the last column one on the right is the first
/// pixel of the row below its own. A neighbour outside the buffer is replaced by its mirror image.
class Neighbours {
  public:
    Neighbours(const Pixel* pixel, int column, int row, int width, int height)
        : pixel_(pixel),
          width_(width),
          before_(static_cast<std::ptrdiff_t>(row) * width + column),
          behind_(static_cast<std::ptrdiff_t>(height) * width - before_ - 1) {}

    int Right() const { return At(kSameColor, -kSameColor); }
    int Left() const { return At(-kSameColor, kSameColor); }
    int UpperPair() const { return At(-width_ - 1, -width_ + 1) + At(-width_ + 1, -width_ - 1); }
    int LowerPair() const { return At(width_ - 1, width_ + 1) + At(width_ + 1, width_ - 1); }

  private:
    static constexpr std::ptrdiff_t kSameColor = 2;  // columns

    bool Inside(std::ptrdiff_t distance) const { return -before_ <= distance && distance <= behind_; }

    int At(std::ptrdiff_t distance, std::ptrdiff_t mirrored) const {
        if (Inside(distance)) {
            return pixel_[distance];
        }
        // In an image too small for either, the pixel stands in for its neighbour.
        return Inside(mirrored) ? pixel_[mirrored] : *pixel_;
    }

    const Pixel* pixel_;
    std::ptrdiff_t width_;
    std::ptrdiff_t before_;  // pixels in the buffer
    std::ptrdiff_t behind_;
};

constexpr int kEdge = 2;  // columns on each side of the image with a neighbour on one side only

int HorizontalMean(const Neighbours& near, int column, int width) {
    if (column < kEdge) {
        return near.Right();
    }
    if (column >= width - kEdge) {
        return near.Left();
    }
    return (near.Left() + near.Right()) / 2;
}

/// In the columns at the edge the horizontal term is one pixel instead of two, but the divisor stays the
/// same. Such a pixel deliberately comes out at about nine tenths of its neighbours' mean.
int DiagonalMean(const Neighbours& near, int column, int row, int width, int height) {
    int horizontal = near.Left() + near.Right();
    if (column < kEdge) {
        horizontal = near.Right();
    } else if (column >= width - kEdge) {
        horizontal = near.Left();
    }
    int diagonal = 2 * (near.UpperPair() + near.LowerPair());
    if (row < 1) {
        diagonal = 4 * near.LowerPair();
    } else if (row >= height - 1) {
        diagonal = 4 * near.UpperPair();
    }
    return (diagonal + horizontal + 5) / 10;
}

}  // namespace

int sensorfixtools::fixPixelLine(unsigned int serial, std::vector<Pixel>* pixels, int width, int height,
                                 sensdb* db, bool test) {
    const std::vector<std::uint16_t> list = db->Camera(serial).Line;
    for (std::size_t i = 0; i + sensdb::Sensdbtype::kLineGroup <= list.size();
         i += sensdb::Sensdbtype::kLineGroup) {
        DefectGroup group(&list[i]);
        if (width == sensor_frame::kCroppedWidth) {
            group.MoveToCroppedFrame(height);
        }
        if (group.column != group.second_column) {
            return 1;
        }
        if (group.column >= width) {
            continue;
        }
        const int end_row = std::min<int>(group.end_row, height);
        for (int row = group.first_row; row < end_row; ++row) {
            Pixel* pixel = pixels->data() + static_cast<std::ptrdiff_t>(row) * width + group.column;
            if (test) {
                *pixel = sensor_frame::kWhite;
            } else {
                interp(pixel, group.column, row, width, height);
            }
        }
    }
    return 0;
}

int sensorfixtools::interp(Pixel* pixel, int column, int row, int width, int height) {
    const Neighbours near(pixel, column, row, width, height);
    const bool same_parity = column % 2 == row % 2;
    const int value =
        same_parity ? HorizontalMean(near, column, width) : DiagonalMean(near, column, row, width, height);
    *pixel = static_cast<Pixel>(value);
    return 0;
}
