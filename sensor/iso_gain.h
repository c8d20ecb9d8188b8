// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_ISO_GAIN_H
#define VELMARCON_SENSOR_ISO_GAIN_H

#include <cstdint>

/// The factor by which the sensor's dark level grows from the base ISO of 160 to `iso`: 2, 4, 8 and 16 at
/// exactly 320, 640, 1250 and 2500; 1 at every other speed.
std::uint16_t IsoGain(std::uint16_t iso);

#endif  // VELMARCON_SENSOR_ISO_GAIN_H
