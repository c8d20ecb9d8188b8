// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_GUESSED_OPTIONS_H
#define VELMARCON_BATCH_GUESSED_OPTIONS_H

#include <string>
#include <vector>

/// The options of velmarcon that the DNG at `dng` of the pair with the JPEG at `jpg` may have been made with,
/// by what it has: a preview, a black level. The likelier come first; none when a file cannot be read.
/// Options that change pixels alone are not guessed.
std::vector<std::vector<std::string>> GuessedOptions(const std::string& dng, const std::string& jpg);

#endif  // VELMARCON_BATCH_GUESSED_OPTIONS_H
