// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_JUDGE_H
#define VELMARCON_TESTS_MATRIX_JUDGE_H

#include <string>

#include "tests/matrix/case.h"
#include "tests/matrix/case_folder.h"
#include "tests/matrix/child.h"
#include "tests/matrix/known_pixels.h"

namespace matrix {

/// The result of a case.
struct Verdict {
    std::string fault;    ///< empty if the program behaved correctly
    std::string outcome;  ///< "DNG", or the message that was printed instead
};

/// Judges how a run ended and what it left in `folder`.
Verdict Judge(const Case& one, const Files& files, const Ending& ending, const CaseFolder& folder,
              const KnownPixels& known);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_JUDGE_H
