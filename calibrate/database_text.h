// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_DATABASE_TEXT_H
#define VELMARCON_CALIBRATE_DATABASE_TEXT_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "calibrate/calibration.h"

/// The text of a sensor database with new values for one camera. Everything else in it, other cameras,
/// comments and keys that the program does not know, stays byte for byte.
namespace database_text {

/// What the text holds for a camera, as the program reads it.
struct Values {
    std::vector<std::uint16_t> lines;
    std::vector<float> levels;
};
Values Read(const std::string& text, int serial);

/// The rows that a camera's groups of four list.
std::vector<ListedRows> ListedIn(std::span<const std::uint16_t> lines);

/// The Line values of runs, by column: a run that begins in the rows that the camera's own DNGs lack gets a
/// second group, and runs next to each other are listed several times, because each is repaired from the
/// other.
std::vector<std::uint16_t> LinesOfRuns(std::span<const ListedRows> runs);

/// Puts `found` and `levels` in place of what `text` has for the camera. Its own groups stay, unless a found
/// run covers them up to 24 rows at either end; then that run also takes what they have more. Returns why
/// that cannot be done, `text` then stays as it was, or an empty text.
[[nodiscard]] std::string Merge(std::string& text, int serial, std::vector<ListedRows> found,
                                std::span<const float> levels);

}  // namespace database_text

#endif  // VELMARCON_CALIBRATE_DATABASE_TEXT_H
