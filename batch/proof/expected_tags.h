// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_EXPECTED_TAGS_H
#define VELMARCON_BATCH_PROOF_EXPECTED_TAGS_H

#include <string>

#include "app/run_settings.h"
#include "batch/proof/camera_dng.h"
#include "dng/dnglib.h"
#include "exif/lensdb.h"
#include "input/read_input_data.h"
#include "sensor/sensdb.h"

/// The tags that a DNG must have. Values that the layout fills in are 0.
struct ExpectedTags {
    IFD ifd0;
    IFD sub_ifd;  ///< empty when IFD0 holds the raw image
    IFD exif_ifd;
};

/// Of a pair, whose record has the shooting data of its JPEG and the image's size; its lens is changed as a
/// conversion changes it. `dark_frame`: one is subtracted.
ExpectedTags TagsOfPair(ReadInputData& record, const RunSettings& settings, bool dark_frame, lensdb& lenses,
                        sensdb& sensors);

/// Of a repaired DNG. `dark_levels_removed`: the repair has removed them.
ExpectedTags TagsOfRepair(const CameraDng& camera, const RunSettings& settings, bool dark_levels_removed,
                          lensdb& lenses, sensdb& sensors);

/// Whether the dark levels of this file were removed before: no repair does it again.
bool HasDarkLevelsRemoved(const CameraDng& camera);

#endif  // VELMARCON_BATCH_PROOF_EXPECTED_TAGS_H
