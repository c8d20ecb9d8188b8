// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_ENTRY_CASES_H
#define VELMARCON_TESTS_MATRIX_ENTRY_CASES_H

#include "tests/matrix/case.h"

namespace matrix {

/// IFDs without entries, with missing, repeated or unsorted entries, and with the maximum number of entries.
void AddEntryCases(CaseList& cases);
/// Fractions that can't be divided or whose quotient is out of range, in every field that holds a fraction.
void AddRationalCases(CaseList& cases);
/// Texts without an end, of length zero, of 64 KiB and of unusual bytes, in every field that holds a text.
void AddTextCases(CaseList& cases);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_ENTRY_CASES_H
