// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_SHOT_H
#define VELMARCON_SAMPLES_SHOT_H

#include <cstdint>
#include <string>

#include "samples/tiff_entry.h"

namespace samples {

/// Everything the camera records about one exposure. The defaults are a daylight exposure, 1/250 s at f/5.6,
/// ISO 160, with a 6-bit coded 50 mm lens.
struct Shot {
    std::string make = "Leica Camera AG";
    std::string model = "M8 Digital Camera";
    std::string software = "1.092";
    std::string date_time = "2007:08:02 22:13:49";  ///< also DateTimeOriginal
    std::string date_time_digitized = "2007:08:02 22:13:49";
    std::uint16_t orientation = 1;

    Rational exposure_time = {4000, 1000000};
    std::uint16_t exposure_program = 1;
    std::uint16_t iso = 160;
    SRational shutter_speed = {524288, 65536};
    SRational exposure_bias = {0, 65536};
    Rational max_aperture = {131072, 65536};
    std::uint16_t metering_mode = 2;
    std::uint16_t light_source = 0;
    std::uint16_t flash = 0;
    Rational focal_length = {50000, 1000};
    std::uint16_t white_balance = 0;
    Rational digital_zoom = {0, 1};
    std::uint16_t focal_length_35mm = 67;
    std::uint16_t scene_capture_type = 0;
    std::uint32_t pixel_x_dimension = 3936;
    std::uint32_t pixel_y_dimension = 2630;
    std::string image_unique_id = "00000000000000000000000000000001";

    // The maker note.
    std::uint16_t quality = 1;  ///< 1 fine, 2 basic
    std::uint32_t user_profile = 0;
    std::uint32_t serial_number = 3106091;
    std::uint16_t white_balance_setting = 0;
    std::uint8_t lens_code = 33;      ///< 6 bits; 0: no coded lens
    std::uint8_t frame_selector = 3;  ///< 2 bits; 1: 28/90, 2: 24/35, 3: 50/75 mm frame lines
    /// 0x0311; its numerator minus that of 0x0312, plus 285082, gives f/5.6.
    SRational external_light = {49152, 65536};
    SRational measured_light = {-32768, 65536};  ///< 0x0312
    Rational approximate_f_number = {367002, 65536};
    std::int32_t temperature = 27;
    std::uint32_t colour_temperature = 5200;
    Rational level_red = {16384, 34488};
    Rational level_green = {16384, 16384};
    Rational level_blue = {16384, 20567};
    std::uint32_t uv_ir_correction = 0;
    std::uint32_t ccd_version = 1;
    std::uint32_t ccd_board_version = 2;
    std::uint32_t controller_version = 3;
    std::uint32_t m16c_version = 4;
    std::uint32_t image_number = 1;
};

}  // namespace samples

#endif  // VELMARCON_SAMPLES_SHOT_H
