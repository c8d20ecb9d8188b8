// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_PROGRAM_H
#define VELMARCON_TESTS_SUPPORT_PROGRAM_H

#include <cstdint>
#include <string>
#include <vector>

namespace support {

/// How a program ended.
struct Outcome {
    int status = -1;          ///< exit status; 128 + signal number when a signal ended it
    std::string output;       ///< standard output
    std::string errors;       ///< standard error
    long peak_kilobytes = 0;  ///< largest resident set
};

/// How a program is started.
struct Start {
    std::string folder;                  ///< current folder; empty: the test's own
    std::string name;                    ///< argv[0]; empty: the same as `program`
    bool through_path = false;           ///< look `program` up in PATH, as a shell does
    std::vector<std::string> variables;  ///< "NAME=value", added to the environment
    std::uint64_t largest_file = 0;      ///< bytes that a file may grow to; 0: no limit
};

/// Runs `program` to its end, without standard input.
Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const Start& start = {});

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_PROGRAM_H
