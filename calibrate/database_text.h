// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DATABASE_TEXT_H
#define VELMARCON_CALIBRATE_DATABASE_TEXT_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "calibrate/calibration.h"

/// Edits the text of a sensor database to hold new values for one camera. Everything else (other cameras,
/// comments, unknown keys) stays byte for byte.
namespace database_text {

/// The values of a camera in the text, as velmarcon reads them.
struct Values {
    std::vector<std::uint16_t> lines;
    std::vector<float> levels;
};
Values Read(const std::string& text, int serial);

/// The rows that a camera's groups of four list.
std::vector<ListedRows> ListedIn(std::span<const std::uint16_t> lines);

/// The Line values of runs, sorted by column. A run that begins in the rows that the camera's own DNGs lack
/// gets a second group; runs in adjacent columns are listed several times, because each is repaired from the
/// other.
std::vector<std::uint16_t> LinesOfRuns(std::span<const ListedRows> runs);

/// Replaces the values that `text` has for the camera with `found` and `levels`. An existing group is kept,
/// unless a found run covers it with a tolerance of 24 rows at either end; the run is then extended to the
/// rows of the group. Returns an error message and leaves `text` unchanged if that is impossible, otherwise
/// an empty text.
[[nodiscard]] std::string Merge(std::string& text, int serial, std::vector<ListedRows> found,
                                std::span<const float> levels);

}  // namespace database_text

#endif  // VELMARCON_CALIBRATE_DATABASE_TEXT_H
