// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_OPTION_SETS_H
#define VELMARCON_TESTS_MATRIX_OPTION_SETS_H

#include <cstdint>
#include <string>
#include <vector>

namespace matrix {

/// What is converted.
enum class Kind : std::uint8_t { kPair, kDng };

/// What a set of options does to the raw image.
enum class Correction : std::uint8_t {
    kNone,
    kDarkFrame,  ///< -b with a .BIA file
    kLevels,     ///< -s
    kRows,       ///< -sb
    kLineTest,   ///< -st
    kNewLevels,  ///< -sd
};

/// Whether identical runs may give pixels that differ by 1.
constexpr bool IsDithered(Correction correction) {
    return correction == Correction::kLevels || correction == Correction::kLineTest ||
           correction == Correction::kNewLevels;
}

struct OptionSet {
    Kind kind = Kind::kPair;
    Correction correction = Correction::kNone;
    std::vector<std::string> arguments = {};
    bool older_dng = false;  ///< whether a file with the name of the result exists already
};

/// The option sets that the damaged inputs take in turn. Their numbers are prime, so that every field meets
/// different sets.
const std::vector<OptionSet>& OptionSets(Kind kind);

/// The option sets that use the lens database.
const std::vector<OptionSet>& LensOptionSets();
/// The option sets that use the sensor database.
const std::vector<OptionSet>& SensorOptionSets();

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_OPTION_SETS_H
