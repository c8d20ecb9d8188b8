// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_ANY_CAMERA_H
#define VELMARCON_FUZZ_ANY_CAMERA_H

#include "exif/lensdb.h"
#include "fuzz/scratch_folder.h"
#include "sensor/sensdb.h"

/// Lenses for nearly every code that a file may hold. One has no apertures and one no serial number; there is
/// none for code 63 or for texts that are not codes.
lensdb AnyLens();

/// Removes the cameras without values, which lookups have added. A fuzzer that keeps one database for all
/// inputs, to avoid reading its file again, calls this between inputs.
void ForgetUnknownCameras(sensdb& sensors);

/// Writes a sensdb.ini into `folder` for the cameras 3106091 (defects and levels) and 0 (damaged groups of
/// defects, too few levels), and reads it.
sensdb AnyCamera(const ScratchFolder& folder);

#endif  // VELMARCON_FUZZ_ANY_CAMERA_H
