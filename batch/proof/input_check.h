// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_INPUT_CHECK_H
#define VELMARCON_BATCH_PROOF_INPUT_CHECK_H

#include <cstdint>
#include <string>
#include <vector>

/// What is wrong with the input of a picture of which a DNG can be made all the same.
enum class Flaw : std::uint8_t {
    kShortRaw,           ///< the RAW file lacks rows
    kShortDarkFrame,     ///< the dark frame lacks rows
    kNoMakerNote,        ///< white balance, f-number or serial number are not in the JPEG
    kMovedDirectory,     ///< the camera's DNG was written anew by another program: a repair takes stale tags
    kCameraDngOfLength,  ///< the camera's DNG has not the camera's length
};

/// A flaw in words that follow the picture's name: "the RAW file has only ...".
struct InputFlaw {
    Flaw kind;
    std::string text;

    friend bool operator==(const InputFlaw&, const InputFlaw&) = default;
};

/// Of `base`.RAW, `base`.JPG and, with `dark_frame`, `base`.BIA in `folder`, which ends in its separator or
/// is empty. A file that cannot be read at all has none: its conversion says so.
std::vector<InputFlaw> FlawsOfPair(const std::string& folder, const std::string& base,
                                   bool dark_frame = false);

/// Of the camera's DNG at `dng`, likewise.
std::vector<InputFlaw> FlawsOfCameraDng(const std::string& dng);

#endif  // VELMARCON_BATCH_PROOF_INPUT_CHECK_H
