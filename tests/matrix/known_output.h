// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_KNOWN_OUTPUT_H
#define VELMARCON_TESTS_MATRIX_KNOWN_OUTPUT_H

#include <string>

#include "tests/matrix/option_sets.h"

namespace matrix {

/// What the program printed in one run.
struct Said {
    std::string unknown;        ///< the first line that the program should not print; empty if there is none
    bool failed = false;        ///< whether a message says that the picture was not converted
    int status = 0;             ///< the exit status that matches the output
    bool new_database = false;  ///< whether it made dark levels and did not report a failure to write them
    std::string message;        ///< the last error, used to count outcomes; empty if there is none
};

/// Interprets the lines of standard output. The picture is L1 in the folder FolderOf(kind).
Said Understand(const std::string& output, Kind kind);

/// The folder of the input: "pair" or "dng".
const char* FolderOf(Kind kind);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_KNOWN_OUTPUT_H
