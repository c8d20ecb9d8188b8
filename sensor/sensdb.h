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

/// The sensor database, `sensdb.ini`: for each camera body, the defective sensor columns and the dark level
/// of each column. The file holds one section per camera, named by its serial number, with any number of Line
/// and LevelCorrection values in order. These two names are accepted in exactly this spelling; others are
/// ignored.
class sensdb {
  public:
    /// One camera.
    struct Sensdbtype {
        /// Defective columns in groups of four values: column, first row, column again, row after the last,
        /// in pixels of the 3968-column sensor frame.
        std::vector<std::uint16_t> Line;
        static constexpr std::size_t kLineGroup = 4;  ///< values
        /// Dark level of each column of the 3968-column frame, in raw units at the base ISO.
        std::vector<float> LevelCorrection;
    };

    /// An empty database for the file `folder` + "sensdb.ini"; `folder` ends in a separator or is empty.
    explicit sensdb(const std::string& folder);

    /// Reads the file. Its cameras replace those of the same number; others stay. If the file has not changed
    /// since it was last read, does nothing and returns the same as before. Returns 0, or the INI library's
    /// negative error code if the file cannot be read or if a camera's Line list names more pixels than the
    /// sensor has; the cameras then stay unchanged. A bad number counts as its numeric prefix, or 0.
    [[nodiscard]] int LoadSensData();

    /// Like LoadSensData, but reads only one camera; the others stay unchanged. Afterwards the database
    /// cannot be written until LoadSensData has read all of it.
    int LoadCamera(std::uint32_t serial);

    /// Replaces the dark levels of the image's camera with those of the image, which must be a loaded dark
    /// exposure of Width x Height pixels. Returns 0.
    int CalcSensLevel(ReadInputData* image);

    /// Writes the file anew, completely or not at all; cameras without values are left out. A file that could
    /// not be read completely is not replaced. On failure prints one line with the name and the reason.
    /// Returns 0, or the INI library's negative error code.
    [[nodiscard]] int WriteSensData();

    /// The record of a camera; makes an empty one for an unknown camera.
    Sensdbtype& Camera(std::uint32_t serial) { return Cameras[static_cast<int>(serial)]; }

    std::string DatabaseFile;           ///< path of sensdb.ini
    std::map<int, Sensdbtype> Cameras;  ///< by camera serial number

  private:
    [[nodiscard]] int Load(std::optional<int> camera);
    [[nodiscard]] int Take(const std::string& text, std::optional<int> camera);
    void Forget();

    // The file as it was last read; forgotten when the cameras change.
    std::optional<FileState> seen_;  ///< empty if the file is so recent that its times prove nothing
    std::optional<std::string> text_;
    std::set<int> taken_;  ///< cameras that were read from the text
    bool all_taken_ = false;
    int result_ = 0;  ///< of the last Take

    /// There may be a file that was not read completely, because reading failed or because one camera was
    /// enough.
    bool unreadable_ = false;
};

#endif  // VELMARCON_SENSOR_SENSDB_H
