// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_REPORTED_CORRECTIONS_H
#define VELMARCON_SENSOR_REPORTED_CORRECTIONS_H

#include <cstdint>
#include <vector>

#include "sensor/sensdb.h"
#include "sensor/sensorfixtools.h"

/// An image as the corrections take it, wherever it came from.
struct SensorImage {
    std::uint32_t serial = 0;  ///< of the camera
    std::uint16_t iso = 0;
    std::vector<unsigned short>* pixels = nullptr;  ///< not owned
    int width = 0;
    int height = 0;
};

/// The two corrections of sensorfixtools as a run makes them, for conversion and repair alike: what is
/// printed about them, and when they are left out because the database has nothing for the camera.
class ReportedCorrections {
  public:
    ReportedCorrections(const SensorImage& image, sensdb& sensors, bool verbose)
        : image_(image), sensors_(sensors), verbose_(verbose) {}

    /// Repairs the camera's defective columns, or paints them white with `test`. A camera with no listed
    /// columns is left unchanged, silently.
    void FixPixelLines(bool test);

    /// Removes the dark field; see sensorfixtools::fixBlackLevels.
    /// Returns whether the camera has levels for it.
    bool FixDarkField(bool estimate);

  private:
    SensorImage image_;
    sensdb& sensors_;
    bool verbose_;
    sensorfixtools tools_;
};

#endif  // VELMARCON_SENSOR_REPORTED_CORRECTIONS_H
