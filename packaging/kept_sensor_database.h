// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_KEPT_SENSOR_DATABASE_H
#define VELMARCON_PACKAGING_KEPT_SENSOR_DATABASE_H

#include <filesystem>

constexpr const char* kSensorDatabase = "sensdb.ini";

/// Keeps the sensor database of `folder`, which a run with -sd is about to replace, as sensdb.ini.1 or, with
/// such copies there, under the number after the highest. The copy is whole and on disk, and replaces
/// nothing; there is none when the one of the highest number holds the same bytes already. A database that is
/// not there, or is not a plain file, is not replaced by such a run and is not kept. Returns 0 or the
/// system's error number.
[[nodiscard]] int KeepSensorDatabase(const std::filesystem::path& folder);

#endif  // VELMARCON_PACKAGING_KEPT_SENSOR_DATABASE_H
