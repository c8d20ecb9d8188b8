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
    int status = -1;          ///< exit status; 128 + signal number when a signal ended it
    std::string output;       ///< standard output
    std::string errors;       ///< standard error
    long peak_kilobytes = 0;  ///< largest resident set
};

/// Where a program's standard output goes. Only what is read is in the Outcome.
enum class StandardOutput : std::uint8_t {
    kRead,
    kClosed,     ///< it has none
    kAllClosed,  ///< nor standard input and error
    kFull,       ///< a device that takes nothing
    kDeserted    ///< a pipe that nobody reads any more
};

/// How a program is started.
struct Start {
    std::string folder;                  ///< current folder; empty: the test's own
    std::string name;                    ///< argv[0]; empty: the same as `program`
    bool through_path = false;           ///< look `program` up in PATH, as a shell does
    std::vector<std::string> variables;  ///< "NAME=value", added to the environment
    std::uint64_t largest_file = 0;      ///< bytes that a file may grow to; 0: no limit
    std::uint64_t address_space = 0;     ///< bytes of memory that the program may take; 0: no limit
    StandardOutput output = StandardOutput::kRead;
    bool traced = false;  ///< it stops at its first instruction; see TracedProgram
};

/// The files that take what a program prints.
struct Logs {
    std::string output;
    std::string errors;
};

/// Runs `program` to its end, without standard input. One that hangs is ended by SIGALRM after some minutes.
Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const Start& start = {});

/// Starts `program`, without standard input. Returns its process number.
pid_t StartProgram(const std::string& program, const std::vector<std::string>& arguments, const Start& start,
                   const Logs& logs);

/// What Outcome::status is for a status of waitpid.
int ExitStatus(int status);

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_PROGRAM_H
