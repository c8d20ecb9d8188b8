// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_SENSOR_EXPOSURES_H
#define VELMARCON_SAMPLES_SENSOR_EXPOSURES_H

#include <string>

namespace samples {

/// Exposures of a simulated sensor, as pairs in the folders `dark`, `flat` and `later` of `folder`, as far
/// as there are any, with what is wrong with the sensor in truth.txt: column, first row and end row of each
/// defect, one per line.
struct SensorExposures {
    std::string folder;
    int seed = 1;      ///< of the sensor
    int low = 4;       ///< dark exposures at ISO 160
    int high = 0;      ///< dark exposures at ISO 2500
    int flat = 0;      ///< flat exposures
    int later = 0;     ///< dark exposures at ISO 2500 for a later check
    int strength = 6;  ///< raw units of the weakest defects at ISO 160; 0: a sensor without defects
    int serial = 3106091;
};

/// Writes them. Returns what failed, or an empty text.
std::string WriteSensorExposures(const SensorExposures& request);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_SENSOR_EXPOSURES_H
