// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_PROOF_JPEG_EXIF_H
#define VELMARCON_BATCH_PROOF_JPEG_EXIF_H

#include <optional>
#include <string>

#include "exif/exif_info.h"

/// The shooting data in the JPEG at `jpg`, of which no more is read than is needed for them; nothing when it
/// cannot be read or has no EXIF block that can be.
std::optional<EXIFInfo> ReadJpegExif(const std::string& jpg);

#endif  // VELMARCON_BATCH_PROOF_JPEG_EXIF_H
