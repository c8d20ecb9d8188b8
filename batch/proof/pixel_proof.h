// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_PIXEL_PROOF_H
#define VELMARCON_BATCH_PROOF_PIXEL_PROOF_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// What the dithered removal of the dark field may take from a pixel: one of two numbers for each column.
struct ColumnLevels {
    std::vector<std::uint16_t> least;
    std::vector<std::uint16_t> most;

    bool empty() const { return least.empty(); }
};

/// The levels of an image of `width` columns, taken at `iso` by a camera with the dark levels `correction`;
/// none when its dark field is not removed: it is no frame of the sensor, or there are too few levels.
ColumnLevels DitheredLevels(std::span<const float> correction, int width, std::uint16_t iso);

/// Compares the raw image in a DNG with the one that it must be, row by row from the top.
class PixelProof {
  public:
    /// `levels`, which outlive the object, are taken from the rows that a DNG must have, but for pixels
    /// smaller than that, which are 0.
    explicit PixelProof(const ColumnLevels& levels) : levels_(levels) {}

    /// Compares the next row of the DNG with the one that it must be, of the same length. Returns whether
    /// they match.
    bool Next(std::span<const std::uint16_t> written, std::span<const std::uint16_t> expected);

    /// Of the row that did not match: "pixel 17 of row 3 is 512 instead of 513", both counted from 0; empty
    /// when all did.
    const std::string& difference() const { return difference_; }

  private:
    void Describe(std::span<const std::uint16_t> written, std::span<const std::uint16_t> expected);

    const ColumnLevels& levels_;
    std::size_t y_ = 0;
    std::string difference_;
};

/// `row` less `dark`, as a dark frame is subtracted: what would be negative is 0. All have the same length.
void SubtractDark(std::span<const std::uint16_t> row, std::span<const std::uint16_t> dark,
                  std::span<std::uint16_t> difference);

#endif  // VELMARCON_BATCH_PROOF_PIXEL_PROOF_H
