// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_DATABASE_NAMES_H
#define VELMARCON_SENSOR_DATABASE_NAMES_H

#include <cstdlib>

/// The names in the sensor database.
namespace database_names {

constexpr const char* kLineKey = "Line";
constexpr const char* kLevelKey = "LevelCorrection";

/// The low bits of the number at the start of `text`; 0 if there is none.
template <typename T>
T ToInteger(const char* text) {
    constexpr int decimal = 10;
    return static_cast<T>(std::strtoll(text, nullptr, decimal));
}

/// The serial number of the camera whose section is called `name`.
inline int SerialOf(const char* name) {
    return ToInteger<int>(name);
}

}  // namespace database_names

#endif  // VELMARCON_SENSOR_DATABASE_NAMES_H
