// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_SAMPLE_DATABASES_H
#define VELMARCON_SAMPLES_SAMPLE_DATABASES_H

#include <cstdint>
#include <string>
#include <vector>

#include "samples/sensor_dump.h"
#include "samples/shot.h"
#include "samples/tiff_entry.h"

namespace samples {

/// A 6-bit coded lens, or one focal length of a lens with several. The focal lengths of one lens share the
/// code; the frame selector tells them apart.
struct Lens {
    std::uint8_t code;
    std::uint8_t frame_selector;  ///< 1: 28/90, 2: 24/35, 3: 50/75 mm frame lines
    std::uint32_t focal_length;   ///< mm
    std::uint16_t focal_length_35mm;
    Rational max_aperture;  ///< APEX
    std::string bits;       ///< `code` in binary, most significant bit first
    std::string model;
    std::vector<std::string> apertures;  ///< f-numbers
};

/// The lenses of the sample card.
const std::vector<Lens>& Lenses();

/// Mounts `lens` on the camera: sets lens code, frame selector, focal lengths and widest aperture of `shot`.
/// Null means a lens without a code, about which the camera knows nothing.
void Mount(const Lens* lens, Shot& shot);

/// The text of a lensdb.ini with a section for each code of Lenses(); a section holds the code's first focal
/// length.
std::string LensDatabase();

/// The text of a sensdb.ini for the camera `serial_number`: the defects of `options`, and its column levels
/// relative to the darkest column, at ISO 160.
std::string SensorDatabase(std::uint32_t serial_number, const SensorOptions& options);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_SAMPLE_DATABASES_H
