// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_SAMPLE_CARD_H
#define VELMARCON_SAMPLES_SAMPLE_CARD_H

#include <cstdint>
#include <optional>
#include <string>

#include "samples/file_writer.h"
#include "samples/shot.h"

namespace samples {

/// What to write to a card.
struct CardOptions {
    int pairs = 3;  ///< number of pairs (.RAW and .JPG), L1000001 and up
    /// The ISO speed of all pairs; default: varies from pair to pair, 160, 640, 2500, ...
    std::optional<std::uint16_t> iso = std::nullopt;
    bool noise = true;
    int seed = 1;       ///< of the noise
    bool flat = false;  ///< an even grey sky instead of the test scene
    bool dark = false;  ///< a dark frame (.BIA) for every .RAW, and one more pair that is a dark exposure
    bool dng = false;   ///< a DNG as the camera writes it, as the last file
    bool databases = false;  ///< lensdb.ini and sensdb.ini for the pairs' lenses and camera
    bool force = false;      ///< overwrite existing files
};

/// "L1000001" for number 1.
std::string BaseName(int number);

/// The exposure of pair `number`, counted from 1: ISO speed, lens, exposure bias, time and image number
/// change from pair to pair. Every fourth lens has no code.
Shot CardShot(int number, const CardOptions& options);

/// Writes the files that `options` asks for into `folder`, which is created if it does not exist. If one of
/// the files exists already and `force` is off, nothing is written. Returns an error message, empty on
/// success.
std::string WriteCard(const std::string& folder, const CardOptions& options);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_SAMPLE_CARD_H
