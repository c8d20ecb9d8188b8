// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_CAMERA_DNG_H
#define VELMARCON_BATCH_PROOF_CAMERA_DNG_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/byte_view.h"
#include "batch/proof/tiff_directory.h"

/// A DNG that can be repaired, in the bytes of its file, which must outlive it: the camera's, or one that was
/// repaired before.
class CameraDng {
  public:
    /// Nothing when the file is none, or does not hold all that a repair takes from it.
    static std::optional<CameraDng> Read(ByteView file);

    const TiffDirectory& ifd0() const { return ifd0_; }
    const TiffDirectory& raw_ifd() const { return raw_ifd_; }
    const TiffDirectory& exif() const { return exif_; }

    int width() const { return static_cast<int>(width_); }
    int height() const { return static_cast<int>(height_); }

    /// The bytes of the preview at its full size; what the file does not hold is 0.
    std::vector<std::uint8_t> Preview() const;

    /// Fills `row`, of width() pixels, with those of row `y`.
    void GetRow(std::size_t y, std::span<std::uint16_t> row) const;

  private:
    using Table = std::array<std::uint16_t, 256>;

    CameraDng() = default;
    bool TakeLayout();
    bool TakeTable();

    ByteView file_;
    TiffDirectory ifd0_;
    TiffDirectory raw_ifd_;
    TiffDirectory exif_;
    std::uint64_t width_ = 0;
    std::uint64_t height_ = 0;
    std::optional<Table> table_;            ///< of 8-bit pixels
    std::span<const std::uint8_t> pixels_;  ///< 8 bits each with a table, 16 without
};

#endif  // VELMARCON_BATCH_PROOF_CAMERA_DNG_H
