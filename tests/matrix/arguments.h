// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_ARGUMENTS_H
#define VELMARCON_TESTS_MATRIX_ARGUMENTS_H

#include <cstddef>
#include <string>
#include <vector>

namespace matrix {

/// The options of the program.
struct Arguments {
    std::string program;    ///< velmarcon, as an absolute path
    std::string sanitized;  ///< velmarcon built with sanitizers; empty: none
    std::size_t every = 1;  ///< run only every n-th case
    std::size_t jobs = 2;   ///< number of cases to run at a time
    std::string only;       ///< run only cases whose name begins with this; empty: all
    std::string keep;       ///< write the files of a single case to this folder instead of running it
    bool list = false;      ///< print the names of the cases instead of running them
};

inline constexpr const char* kUsage =
    "damage_matrix --program FILE [--sanitized FILE] [--every NUMBER] [--jobs NUMBER] [--case NAME]\n"
    "              [--keep FOLDER] [--list]\n"
    "  --case  run only the cases whose names begin with NAME\n"
    "  --keep  write the files of the first of these cases to FOLDER, which must not hold a case yet, and\n"
    "          print how to run the program on them\n";

/// Returns an error message, empty if the command line is valid.
std::string Parse(const std::vector<std::string>& words, Arguments& arguments);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_ARGUMENTS_H
