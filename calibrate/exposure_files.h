// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_EXPOSURE_FILES_H
#define VELMARCON_CALIBRATE_EXPOSURE_FILES_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/pixel.h"

/// A pair: RAW and JPEG file.
struct ExposureFile {
    std::string folder;  ///< ends in a separator, or is empty
    std::string base;    ///< without extension

    friend bool operator==(const ExposureFile&, const ExposureFile&) = default;
};

/// The pairs at `paths`, which are RAW files, their names without extension, or folders. The pairs of a
/// folder are sorted by name. A path without a pair adds a line to `problems`.
std::vector<ExposureFile> FindExposures(std::span<const std::string> paths,
                                        std::vector<std::string>& problems);

/// Loads exposures one after another into the same memory.
class ExposureLoader {
  public:
    /// Loads a pair with the checks of a conversion. Returns 0, or an ErrorCode, whose message has been
    /// printed.
    [[nodiscard]] int Load(const ExposureFile& file);

    // Of the last exposure loaded:
    std::uint32_t serial() const { return serial_; }
    std::uint16_t iso() const { return iso_; }
    std::span<const Pixel> pixels() const { return pixels_; }
    std::vector<Pixel>& frame() { return pixels_; }

  private:
    std::vector<Pixel> pixels_;
    std::uint32_t serial_ = 0;
    std::uint16_t iso_ = 0;
};

#endif  // VELMARCON_CALIBRATE_EXPOSURE_FILES_H
