// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PICTURE_DAMAGE_H
#define VELMARCON_BATCH_PICTURE_DAMAGE_H

#include <string>

#include "app/run_settings.h"
#include "batch/picture_at_work.h"
#include "batch/picture_files.h"

/// What is wrong with the files, in words that follow the picture's name; empty when nothing is. A dark frame
/// is looked at only if `settings` are such that it is subtracted.
std::string FlawsOf(const PictureFiles& files, const RunSettings& settings);

/// A complete DNG may be the only whole copy of a picture whose files are damaged. Returns whether they are,
/// and the picture has failed so that its DNG stays.
[[nodiscard]] bool KeepFromDamage(PictureAtWork& picture, const RunSettings& settings);

#endif  // VELMARCON_BATCH_PICTURE_DAMAGE_H
