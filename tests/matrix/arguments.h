// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_MATRIX_ARGUMENTS_H
#define VELMARCON_TESTS_MATRIX_ARGUMENTS_H

#include <cstddef>
#include <string>
#include <vector>

namespace matrix {

/// What the program is asked for.
struct Arguments {
    std::string program;    ///< velmarcon, as an absolute path
    std::string sanitized;  ///< the same with sanitizers; empty: without
    std::size_t every = 1;  ///< only every so-manieth case
    std::size_t jobs = 2;   ///< cases at a time
    std::string only;       ///< only cases whose name begins so; empty: all
    std::string keep;       ///< write the files of the one case there instead of running it
    bool list = false;      ///< print the names of the cases instead of running them
};

inline constexpr const char* kUsage =
    "damage_matrix --program FILE [--sanitized FILE] [--every NUMBER] [--jobs NUMBER] [--case NAME]\n"
    "              [--keep FOLDER] [--list]\n"
    "  --case  only the cases whose names begin with NAME\n"
    "  --keep  write the files of the first of them into FOLDER, which must not hold such, and say how to "
    "run\n"
    "          the program on them\n";

/// Returns an empty text, or what is wrong with the command line.
std::string Parse(const std::vector<std::string>& words, Arguments& arguments);

}  // namespace matrix

#endif  // VELMARCON_TESTS_MATRIX_ARGUMENTS_H
