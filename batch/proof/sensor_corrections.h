// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_SENSOR_CORRECTIONS_H
#define VELMARCON_BATCH_PROOF_SENSOR_CORRECTIONS_H

#include <cstdint>
#include <vector>

#include "app/run_settings.h"
#include "batch/proof/pixel_proof.h"
#include "sensor/sensdb.h"
#include "sensor/sensorfixtools.h"

/// The camera that took an image, and its size.
struct SensorFrame {
    std::uint32_t serial = 0;
    std::uint16_t iso = 0;
    int width = 0;   ///< pixels
    int height = 0;  ///< pixels
};

/// The corrections that -s, -sd, -st and -sb make to an image, once more and in silence, as far as their
/// result is certain.
class SensorCorrections {
  public:
    /// Everything is owned by the caller.
    SensorCorrections(const RunSettings& settings, sensdb& sensors, const SensorFrame& frame)
        : settings_(settings), sensors_(sensors), frame_(frame) {}

    /// Whether an image is corrected at all: with a sensor option, if there is a database or one is made.
    /// Reads the database when its file has changed.
    static bool AreMade(const RunSettings& settings, sensdb& sensors);

    /// Repairs the camera's listed columns, or paints them white.
    void FixLines(std::vector<std::uint16_t>& pixels);

    /// Whether the camera has levels for the removal of its dark field.
    bool HasLevels() const;

    /// Removes the dark field, if that has no random part. Otherwise returns what it takes from each column.
    ColumnLevels RemoveDarkField(std::vector<std::uint16_t>& pixels);

  private:
    const RunSettings& settings_;
    sensdb& sensors_;
    SensorFrame frame_;
    sensorfixtools tools_;
};

#endif  // VELMARCON_BATCH_PROOF_SENSOR_CORRECTIONS_H
