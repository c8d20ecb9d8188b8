// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_END_TO_END_KILLED_PROGRAM_H
#define VELMARCON_TESTS_END_TO_END_KILLED_PROGRAM_H

#include <chrono>
#include <string>
#include <vector>

namespace end_to_end {

/// A program that is killed during its run. If it ends by itself before that, it must end with status 0. Its
/// output is discarded.
struct KilledProgram {
    std::string program;
    std::vector<std::string> arguments;
    std::string folder;  ///< current folder

    /// Kills the program when it enters or leaves a system call for the `stop`th time, counted from 1.
    /// Returns whether it was killed.
    bool RunUntilSystemCall(int stop) const;

    /// Kills the program after `delay`. Returns whether it was killed.
    bool RunFor(std::chrono::microseconds delay) const;
};

}  // namespace end_to_end

#endif  // VELMARCON_TESTS_END_TO_END_KILLED_PROGRAM_H
