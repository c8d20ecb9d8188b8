// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_STRUCTURE_CASES_H
#define VELMARCON_TESTS_MATRIX_STRUCTURE_CASES_H

#include "tests/matrix/case.h"

namespace matrix {

/// Files with several oddities of structure at once, drawn by number: directories that are missing, there
/// twice, cyclic, nested or overlapping; types and counts that do not belong together; maker notes of another
/// layout; strips in any order and place. A number always gives the same file.
void AddStructureCases(CaseList& cases);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_STRUCTURE_CASES_H
