// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_DATABASE_CASES_H
#define VELMARCON_TESTS_MATRIX_DATABASE_CASES_H

#include "tests/matrix/case.h"

namespace matrix {

/// lensdb.ini and sensdb.ini with invalid numbers and in unusual formats.
void AddDatabaseCases(CaseList& cases);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_DATABASE_CASES_H
