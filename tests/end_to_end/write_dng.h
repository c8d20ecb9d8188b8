// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_WRITE_DNG_H
#define VELMARCON_TESTS_END_TO_END_WRITE_DNG_H

#include <string>
#include <vector>

#include "tests/support/files.h"

namespace end_to_end {

/// Base name of the pair that WriteDng converts.
constexpr const char* kBase = "L1000001";

/// Runs the program with `options` on the pair kBase in `folder`, where it also looks for its databases. An
/// existing DNG is removed first. Returns the DNG's path; the test fails if the program reports an error or
/// writes nothing.
std::string WriteDng(const support::TempFolder& folder, const std::vector<std::string>& options);

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_WRITE_DNG_H
