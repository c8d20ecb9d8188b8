// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_GEOMETRY_CASES_H
#define VELMARCON_TESTS_MATRIX_GEOMETRY_CASES_H

#include "tests/matrix/case.h"

namespace matrix {

/// Sizes, strips, sample sizes and tables of the two images in a camera DNG.
void AddGeometryCases(CaseList& cases);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_GEOMETRY_CASES_H
