// SPDX-License-Identifier: MIT
#include "sensor/row_offsets.h"

#include <cstddef>
#include <cstdint>
#include <numeric>

#include "base/pixel.h"
#include "sensor/dark_pixels.h"

namespace {

/// Pixels below this decide whether the even or the odd rows are darker.
constexpr std::uint16_t kDarkForComparison = 111;
/// Pixels below this determine the offsets.
constexpr std::uint16_t kDarkForOffset = 100;

/// Goes through an image two pixels at a time and measures half rows.
class HalfRowReader {
  public:
    HalfRowReader(std::span<const Pixel> pixels, std::size_t start) : pixels_(pixels), next_(start) {}

    /// Measures the next `samples` samples; every second pixel is one.
    void Measure(std::size_t samples) {
        dark_ = CountDark(pixels_, next_, samples, kDarkForOffset);
        next_ += 2 * samples;
    }

    float Sum() const { return static_cast<float>(dark_.sum); }
    float Count() const { return static_cast<float>(dark_.count); }
    void Skip(std::size_t pixels) { next_ += pixels; }

  private:
    std::span<const Pixel> pixels_;
    std::size_t next_;
    DarkPixels dark_;
};

/// Whether the dark pixels of the even rows add up to less than those of the odd rows. Of each pair of
/// pixels, counted from the start of the image, the first counts in even rows and the second in odd rows.
bool EvenRowsAreDarker(std::span<const Pixel> pixels, std::size_t width) {
    std::uint64_t even = 0;
    std::uint64_t odd = 0;
    const std::size_t rows = pixels.size() / width;
    for (std::size_t y = 0; y < rows; ++y) {
        const std::size_t first_pair = (y * width + 1) / 2;
        const std::size_t end_pair = ((y + 1) * width + 1) / 2;
        const std::size_t odd_row = y % 2;
        const auto dark =
            CountDark(pixels, 2 * first_pair + odd_row, end_pair - first_pair, kDarkForComparison);
        (odd_row != 0 ? odd : even) += dark.sum;
    }
    return even < odd;
}

/// Sets the offsets of the row before `y` to the mean of its two neighbours, which are measured.
void FillRowBefore(RowOffsets& offsets, std::size_t y) {
    offsets.left[y - 1] = (offsets.left[y - 2] + offsets.left[y]) / 2;
    offsets.right[y - 1] = (offsets.right[y - 2] + offsets.right[y]) / 2;
}

/// Offsets of rows 0, 2, 4, ... The estimator is defined so that the reader does not skip the rows in
/// between: the offsets are measured on rows 0, 1, 2, ... of the image. They are divided by the number of
/// pixels in half a row, not by the number of dark pixels. If the number of rows is even, the last row keeps
/// 0.
void MeasureEvenRows(std::span<const Pixel> pixels, std::size_t width, RowOffsets& offsets) {
    const std::size_t half = width / 2;
    const auto divisor = static_cast<float>(half);
    HalfRowReader meter(pixels, 0);
    for (std::size_t y = 0; y < offsets.left.size(); y += 2) {
        meter.Measure((half + 1) / 2);
        offsets.left[y] = meter.Sum() / divisor;
        meter.Measure((width - half) / 2);
        offsets.right[y] = meter.Sum() / divisor;
        if (y > 0) {
            FillRowBefore(offsets, y);
        }
    }
}

/// Offsets of rows 1, 3, 5, ..., measured on these rows and divided by the number of dark pixels. A half row
/// without dark pixels gives NaN.
void MeasureOddRows(std::span<const Pixel> pixels, std::size_t width, RowOffsets& offsets) {
    const std::size_t half = width / 2;
    HalfRowReader meter(pixels, width + 1);
    for (std::size_t y = 1; y < offsets.left.size(); y += 2) {
        meter.Measure(half / 2);
        offsets.left[y] = meter.Sum() / meter.Count();
        meter.Measure((width - half + 1) / 2);
        offsets.right[y] = meter.Sum() / meter.Count();
        if (y == 1) {
            offsets.left[0] = offsets.left[1];
            offsets.right[0] = offsets.right[1];
        } else {
            FillRowBefore(offsets, y);
        }
        meter.Skip(width);
    }
}

/// Sums in single precision and row order, like the offsets themselves.
void SubtractMean(std::vector<float>& offsets) {
    const float mean =
        std::accumulate(offsets.begin(), offsets.end(), 0.0F) / static_cast<float>(offsets.size());
    for (float& offset : offsets) {
        offset -= mean;
    }
}

}  // namespace

RowOffsets EstimateRowOffsets(std::span<const Pixel> pixels, int width, int height) {
    const auto columns = static_cast<std::size_t>(width);
    const auto rows = static_cast<std::size_t>(height);
    RowOffsets offsets = {std::vector<float>(rows), std::vector<float>(rows)};
    if (EvenRowsAreDarker(pixels, columns)) {
        MeasureEvenRows(pixels, columns, offsets);
    } else {
        MeasureOddRows(pixels, columns, offsets);
    }
    SubtractMean(offsets.left);
    SubtractMean(offsets.right);
    return offsets;
}
