// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_STRUCTURE_CASES_H
#define VELMARCON_TESTS_MATRIX_STRUCTURE_CASES_H

#include "tests/matrix/case.h"

namespace matrix {

/// Files with several structural faults at once, drawn by number: IFDs that are missing, duplicated, cyclic,
/// nested or overlapping; types and counts that do not match; maker notes with another layout; strips in any
/// order and place. The same number always gives the same file.
void AddStructureCases(CaseList& cases);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_STRUCTURE_CASES_H
