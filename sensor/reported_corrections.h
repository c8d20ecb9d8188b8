// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_REPORTED_CORRECTIONS_H
#define VELMARCON_SENSOR_REPORTED_CORRECTIONS_H

#include <cstdint>
#include <vector>

#include "base/pixel.h"
#include "sensor/sensdb.h"
#include "sensor/sensorfixtools.h"

/// An image to be corrected, from a pair or from a camera DNG.
struct SensorImage {
    std::uint32_t serial = 0;  ///< of the camera
    std::uint16_t iso = 0;
    std::vector<Pixel>* pixels = nullptr;  ///< not owned
    int width = 0;
    int height = 0;
};

/// Calls the two corrections of sensorfixtools for conversion and repair: prints the lines about them, and
/// leaves them out if the database has no values for the camera.
class ReportedCorrections {
  public:
    ReportedCorrections(const SensorImage& image, sensdb& sensors, bool verbose)
        : image_(image), sensors_(sensors), verbose_(verbose) {}

    /// Repairs the camera's defective columns, or paints them white with `test`. A camera with no listed
    /// columns is left unchanged, silently.
    void FixPixelLines(bool test);

    /// Subtracts the dark levels; see sensorfixtools::fixBlackLevels. Returns false if the camera has none.
    bool FixDarkField(bool estimate);

  private:
    SensorImage image_;
    sensdb& sensors_;
    bool verbose_;
    sensorfixtools tools_;
};

#endif  // VELMARCON_SENSOR_REPORTED_CORRECTIONS_H
