// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BASE_PIXEL_H
#define VELMARCON_BASE_PIXEL_H

#include <cstdint>

/// One 14-bit sensor value. Every image, row and dark frame in the program is made of these.
using Pixel = std::uint16_t;

#endif  // VELMARCON_BASE_PIXEL_H
