// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_GUIDE_FOLDERS_H
#define VELMARCON_SAMPLES_GUIDE_FOLDERS_H

#include <string>

namespace samples {

/// Creates the folders that the commands of the user guide work on, below `folder`: the card as
/// DCIM/100LEICA; card, dark, dark-frames, sky, uncoded, old-dngs and pictures/2026 with pictures in them;
/// dng and repaired, empty. `folder` must not exist. Returns an error message, empty on success.
std::string WriteGuideFolders(const std::string& folder);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_GUIDE_FOLDERS_H
