// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_FIELD_CASES_H
#define VELMARCON_TESTS_MATRIX_FIELD_CASES_H

#include "tests/matrix/case.h"

namespace matrix {

/// Every number that tells where something is or how much of it: directories' counts and links, headers,
/// and each entry's tag, type, count and value, set to what lies at and beside every limit.
void AddFieldCases(CaseList& cases);
/// Every entry with every type, and with counts whose values are as long as 32 bits can tell, or longer.
void AddTypeCases(CaseList& cases);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_FIELD_CASES_H
