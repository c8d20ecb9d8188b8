// SPDX-License-Identifier: MIT
#ifndef VELMARCON_FUZZ_SAME_RECORD_H
#define VELMARCON_FUZZ_SAME_RECORD_H

#include "exif/exif_info.h"

/// Whether all members of two records are equal; floating-point numbers are compared bit by bit.
bool SameRecord(const EXIFInfo& a, const EXIFInfo& b);

#endif  // VELMARCON_FUZZ_SAME_RECORD_H
