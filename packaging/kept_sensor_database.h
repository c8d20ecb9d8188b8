// SPDX-License-Identifier: MIT
#ifndef VELMARCON_PACKAGING_KEPT_SENSOR_DATABASE_H
#define VELMARCON_PACKAGING_KEPT_SENSOR_DATABASE_H

#include <string>
#include <system_error>

/// Backs up the sensor database at `path`, which a run with -sd is about to replace, as sensdb.ini.1, or
/// under the number after the highest one. The backup is complete and on disk, and replaces nothing; none is
/// made if the backup with the highest number has the same bytes. A database that does not exist, or is not a
/// regular file, is not replaced by such a run, and is not backed up.
[[nodiscard]] std::error_code KeepSensorDatabase(const std::string& path);

#endif  // VELMARCON_PACKAGING_KEPT_SENSOR_DATABASE_H
