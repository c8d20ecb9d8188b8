// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_ANY_CAMERA_H
#define VELMARCON_FUZZ_ANY_CAMERA_H

#include "exif/lensdb.h"
#include "fuzz/scratch_folder.h"
#include "sensor/sensdb.h"

/// Lenses for nearly every code that a file may hold: one without apertures, one without a serial number,
/// none for code 63 and for texts that are no code.
lensdb AnyLens();

/// Forgets the cameras without values, which looking for them has made. Whoever keeps a database from input
/// to input, so that its file is not read anew each time, calls it between them.
void ForgetUnknownCameras(sensdb& sensors);

/// Writes a sensdb.ini into `folder` for the cameras 3106091 (defects and levels) and 0 (defects whose groups
/// are damaged, and too few levels), and reads it.
sensdb AnyCamera(const ScratchFolder& folder);

#endif  // VELMARCON_FUZZ_ANY_CAMERA_H
