// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_MATRIX_RUN_H
#define VELMARCON_TESTS_MATRIX_MATRIX_RUN_H

#include <cstddef>
#include <string>

#include "tests/matrix/arguments.h"

namespace matrix {

/// Runs, lists or keeps cases as `arguments` say, with `folder` for their files. Returns the number of
/// failures.
std::size_t Run(const Arguments& arguments, const std::string& folder);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_MATRIX_RUN_H
