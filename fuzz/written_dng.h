// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_WRITTEN_DNG_H
#define VELMARCON_FUZZ_WRITTEN_DNG_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tests/support/tiff_file.h"

/// A DNG that the program wrote. The constructor ends the process unless support::FaultOfDng finds the file
/// complete.
class WrittenDng {
  public:
    /// Checks `bytes`. If `preview` is set, IFD0 must hold the preview and a SubIFD the raw image.
    WrittenDng(std::vector<std::uint8_t> bytes, bool preview);

    const support::TiffIFD& ifd0() const { return ifd0_; }
    const support::TiffIFD& raw_ifd() const { return raw_ifd_; }
    const support::TiffIFD& exif_ifd() const { return exif_ifd_; }

    /// The bytes of the only strip of `ifd`, which must be one of the three.
    std::span<const std::uint8_t> Strip(const support::TiffIFD& ifd) const;
    std::span<const std::uint8_t> bytes() const { return bytes_; }

  private:
    std::vector<std::uint8_t> bytes_;
    support::TiffFile file_;
    support::TiffIFD ifd0_;
    support::TiffIFD raw_ifd_;
    support::TiffIFD exif_ifd_;
};

/// Requires that `entry` is an ASCII value: `text`, followed by a NUL unless it ends in one.
void RequireText(const support::TiffEntry& entry, std::string text);

#endif  // VELMARCON_FUZZ_WRITTEN_DNG_H
