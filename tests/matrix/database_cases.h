// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_DATABASE_CASES_H
#define VELMARCON_TESTS_MATRIX_DATABASE_CASES_H

#include "tests/matrix/case.h"

namespace matrix {

/// lensdb.ini and sensdb.ini with numbers that are none, and written as nobody should write them.
void AddDatabaseCases(CaseList& cases);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_DATABASE_CASES_H
