// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_FIELD_CASES_H
#define VELMARCON_TESTS_MATRIX_FIELD_CASES_H

#include "tests/matrix/case.h"

namespace matrix {

/// Every number that is an offset or a size (counts and links of IFDs, headers, and tag, type, count and
/// value of each entry), set to the values at and next to every limit.
void AddFieldCases(CaseList& cases);
/// Every entry with every type, and with counts whose values reach or exceed the length that 32 bits can
/// hold.
void AddTypeCases(CaseList& cases);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_FIELD_CASES_H
