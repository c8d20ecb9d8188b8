// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_SENSDB_H
#define VELMARCON_SENSOR_SENSDB_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// The sensor database `sensdb.ini`: per camera body, the defective sensor columns and the dark level of each
/// column.
class sensdb {
  public:
    /// One camera.
    struct Sensdbtype {
        /// Defective columns in groups of four: column, first row, column again, end row (exclusive), in
        /// pixels of the 3968-column sensor frame.
        std::vector<std::uint16_t> Line;
        /// Dark level of each column of the 3968-column frame, in raw units at the base ISO.
        std::vector<float> LevelCorrection;
    };

    /// An empty database for the file `folder` + "sensdb.ini"; `folder` ends in a separator or is empty.
    explicit sensdb(const std::string& folder);

    std::string DatabaseFile;           ///< path of sensdb.ini
    std::map<int, Sensdbtype> Cameras;  ///< by camera serial number
};

#endif  // VELMARCON_SENSOR_SENSDB_H
