// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_EXPOSURE_FILES_H
#define VELMARCON_CALIBRATE_EXPOSURE_FILES_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// A pair: RAW and JPEG file.
struct ExposureFile {
    std::string folder;  ///< with its separator, or empty
    std::string base;    ///< without extension

    friend bool operator==(const ExposureFile&, const ExposureFile&) = default;
};

/// The pairs that the paths stand for: RAW files, their names without extension, or folders. Those of a
/// folder by name. A path that stands for none is put into `problems`, a line each.
std::vector<ExposureFile> FindExposures(std::span<const std::string> paths,
                                        std::vector<std::string>& problems);

/// One exposure after the other, in the same memory.
class ExposureLoader {
  public:
    /// Loads a pair with the checks of a conversion. Returns 0 or an ErrorCode, whose line has been printed.
    [[nodiscard]] int Load(const ExposureFile& file);

    // Of the last one loaded:
    std::uint32_t serial() const { return serial_; }
    std::uint16_t iso() const { return iso_; }
    std::span<const std::uint16_t> pixels() const { return pixels_; }
    std::vector<std::uint16_t>& frame() { return pixels_; }

  private:
    std::vector<std::uint16_t> pixels_;
    std::uint32_t serial_ = 0;
    std::uint16_t iso_ = 0;
};

#endif  // VELMARCON_CALIBRATE_EXPOSURE_FILES_H
