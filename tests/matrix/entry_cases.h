// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_ENTRY_CASES_H
#define VELMARCON_TESTS_MATRIX_ENTRY_CASES_H

#include "tests/matrix/case.h"

namespace matrix {

/// Directories without entries, with missing, repeated, unsorted ones, and with as many as can be counted.
void AddEntryCases(CaseList& cases);
/// Fractions that can't be divided or whose quotient has no place, in every field that holds one.
void AddRationalCases(CaseList& cases);
/// Texts without an end, of no length, of 64 KiB, of odd bytes, in every field that holds one.
void AddTextCases(CaseList& cases);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_ENTRY_CASES_H
