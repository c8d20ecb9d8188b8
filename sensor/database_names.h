// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_DATABASE_NAMES_H
#define VELMARCON_SENSOR_DATABASE_NAMES_H

#include <cstdlib>

/// How the sensor database names things.
namespace database_names {

constexpr const char* kLineKey = "Line";
constexpr const char* kLevelKey = "LevelCorrection";

/// The low bits of the number that `text` begins with, 0 without one.
template <typename T>
T ToInteger(const char* text) {
    constexpr int decimal = 10;
    return static_cast<T>(std::strtoll(text, nullptr, decimal));
}

/// The camera whose section is called `name`.
inline int SerialOf(const char* name) {
    return ToInteger<int>(name);
}

}  // namespace database_names

#endif  // VELMARCON_SENSOR_DATABASE_NAMES_H
