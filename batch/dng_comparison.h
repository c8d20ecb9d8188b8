// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_DNG_COMPARISON_H
#define VELMARCON_BATCH_DNG_COMPARISON_H

#include <string>

#include "batch/picture_at_work.h"
#include "batch/proof/dng_proof.h"

/// Compares the DNG of a picture with the picture's files, and if they match, notes the fingerprint of the
/// DNG and, with `checksum`, its check sum. Returns the mismatch in the words of DngProof, or an empty text.
std::string CompareDng(DngProof& proof, bool checksum, PictureAtWork& picture);

/// The mismatch without what is different in each picture.
std::string KindOfMismatch(const std::string& mismatch);

/// Whether the DNG can be compared, and has other pixels.
bool IsOfPixels(const std::string& mismatch);

#endif  // VELMARCON_BATCH_DNG_COMPARISON_H
