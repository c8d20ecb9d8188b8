// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_PROGRAM_H
#define VELMARCON_TESTS_SUPPORT_PROGRAM_H

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace support {

/// How a program ended.
struct Outcome {
    int status = -1;          ///< exit status; 128 + signal number if a signal ended it
    std::string output;       ///< standard output
    std::string errors;       ///< standard error
    long peak_kilobytes = 0;  ///< peak resident set size
};

/// Where a program's standard output goes. The Outcome has only output that was read.
enum class StandardOutput : std::uint8_t {
    kRead,
    kClosed,     ///< standard output is closed
    kAllClosed,  ///< standard input, output and error are closed
    kFull,       ///< a device that is always full
    kDeserted    ///< a pipe that nobody reads
};

/// How to start a program.
struct Start {
    std::string folder;                  ///< current folder; empty: that of the test
    std::string name;                    ///< argv[0]; empty: `program`
    bool through_path = false;           ///< look `program` up in PATH, as a shell does
    std::vector<std::string> variables;  ///< "NAME=value", added to the environment
    std::uint64_t largest_file = 0;      ///< size limit for files in bytes; 0: no limit
    std::uint64_t address_space = 0;     ///< limit for the program's memory in bytes; 0: no limit
    StandardOutput output = StandardOutput::kRead;
    bool traced = false;  ///< stop the program at its first instruction; see TracedProgram
};

/// The files that receive a program's output.
struct Logs {
    std::string output;
    std::string errors;
};

/// Runs `program` to its end, without standard input. A program that hangs is ended by SIGALRM after some
/// minutes.
Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const Start& start = {});

/// Starts `program`, without standard input. Returns its process number.
pid_t StartProgram(const std::string& program, const std::vector<std::string>& arguments, const Start& start,
                   const Logs& logs);

/// Converts a status from waitpid to Outcome::status.
int ExitStatus(int status);

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_PROGRAM_H
