// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SENSOR_SENSDB_H
#define VELMARCON_SENSOR_SENSDB_H

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "system/file_state.h"

class ReadInputData;

/// The sensor database: per camera body, the defective sensor columns and the dark
/// level of each column, kept in `sensdb.ini`. The file holds one section a camera,
/// named by its serial number, with any number of Line and LevelCorrection values in
/// order; these two names are taken in exactly this spelling, others are ignored.
class sensdb {
  public:
    /// One camera.
    struct Sensdbtype {
        /// Defective columns in groups of four: column, first row, column again, end row (exclusive), in
        /// pixels of the 3968-column sensor frame.
        std::vector<std::uint16_t> Line;
        static constexpr std::size_t kLineGroup = 4;  ///< values
        /// Dark level of each column of the 3968-column frame, in raw units at the base ISO.
        std::vector<float> LevelCorrection;
    };

    /// An empty database for the file `folder` + "sensdb.ini"; `folder` ends in a separator or is empty.
    explicit sensdb(const std::string& folder);

    /// Reads the file: cameras in it replace those of the same number, others stay. Does nothing, and returns
    /// the same, when the file is the one that was last read. Returns 0, or the INI library's negative error
    /// code when the file cannot be read, or when a camera's Line list names more pixels than the sensor has;
    /// the cameras then stay as they were. A bad number counts as its numeric prefix, or 0.
    [[nodiscard]] int LoadSensData();

    /// The same for one camera, whatever their number in the file; the others stay as they are. Afterwards
    /// the database can't be written before LoadSensData has read all of it.
    int LoadCamera(std::uint32_t serial);

    /// Replaces the dark levels of the image's camera by those of the image, which must be an exposure in the
    /// dark (loaded, Width x Height pixels). Returns 0.
    int CalcSensLevel(ReadInputData* image);

    /// Writes the file anew, whole or not at all; cameras without values are left out. A file that could not
    /// be read whole is not replaced. A failure prints one line with name and reason. Returns 0, or the INI
    /// library's negative error code.
    [[nodiscard]] int WriteSensData();

    /// The record of a camera; an empty one is made if it is unknown.
    Sensdbtype& Camera(std::uint32_t serial) { return Cameras[static_cast<int>(serial)]; }

    std::string DatabaseFile;           ///< path of sensdb.ini
    std::map<int, Sensdbtype> Cameras;  ///< by camera serial number

  private:
    [[nodiscard]] int Load(std::optional<int> camera);
    [[nodiscard]] int Take(const std::string& text, std::optional<int> camera);
    void Forget();

    // The file as it was last read, unless the cameras have changed since.
    std::optional<FileState> seen_;  ///< unless the file is too young for its times to tell
    std::optional<std::string> text_;
    std::set<int> taken_;  ///< cameras that were looked for in it
    bool all_taken_ = false;
    int result_ = 0;  ///< of taking them

    /// A file may be there of which not everything was read: that failed, or one camera was enough.
    bool unreadable_ = false;
};

#endif  // VELMARCON_SENSOR_SENSDB_H
