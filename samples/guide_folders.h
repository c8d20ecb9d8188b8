// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_GUIDE_FOLDERS_H
#define VELMARCON_SAMPLES_GUIDE_FOLDERS_H

#include <string>

namespace samples {

/// Makes the folders that the commands of the user guide work on, below `folder`: the card as DCIM/100LEICA,
/// then card, dark, dark-frames, sky, uncoded, old-dngs and pictures/2026 with pictures in them, and dng and
/// repaired without. `folder` must not exist. Returns an empty text, or what failed.
std::string WriteGuideFolders(const std::string& folder);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_GUIDE_FOLDERS_H
