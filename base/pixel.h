// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_PIXEL_H
#define VELMARCON_BASE_PIXEL_H

#include <cstdint>

/// One value of the sensor, 14 bits wide. Images, rows and dark frames consist of these, whoever reads,
/// corrects or writes them.
using Pixel = std::uint16_t;

#endif  // VELMARCON_BASE_PIXEL_H
