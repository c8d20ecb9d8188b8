// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_KNOWN_OUTPUT_H
#define VELMARCON_TESTS_MATRIX_KNOWN_OUTPUT_H

#include <string>

#include "tests/matrix/option_sets.h"

namespace matrix {

/// What the program said in one run.
struct Said {
    std::string unknown;        ///< the first line that is none of the program's; empty: all are
    bool failed = false;        ///< a message that the picture could not be converted
    int status = 0;             ///< the exit status that goes with it
    bool new_database = false;  ///< it has made dark levels and did not say that they could not be written
    std::string message;        ///< the last error, for the counts; empty without one
};

/// Sorts the lines of standard output. The picture is L1 in the folder that FolderOf names.
Said Understand(const std::string& output, Kind kind);

/// "pair" or "dng": where a case's input lies.
const char* FolderOf(Kind kind);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_KNOWN_OUTPUT_H
