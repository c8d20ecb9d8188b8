// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_FAULTS_FAULTY_RUN_H
#define VELMARCON_TESTS_FAULTS_FAULTY_RUN_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/faults/fault.h"
#include "tests/faults/io_call.h"
#include "tests/support/program.h"
#include "tests/support/traced_program.h"

namespace faults {

/// How to start the program.
struct Command {
    std::vector<std::string> arguments;
    std::string folder;      ///< current folder
    std::string name;        ///< argv[0]
    std::string watched;     ///< calls are counted from the first use of a path that begins so
    bool on_fat = false;     ///< tell the program that its files are on a FAT file system
    bool renumbers = false;  ///< tell it another inode number at every query
    std::string program = VELMARCON_PROGRAM;
};

/// Runs the program from one file call to the next. The calls of the dynamic loader are not counted.
class IoRun {
  public:
    explicit IoRun(const Command& command);

    /// Continues to the entry of the next file call. Returns std::nullopt if the program has ended.
    std::optional<IoCall> NextCall();

    /// Lets the program run to its end.
    void Finish();

    support::TracedProgram& program() { return program_; }
    const support::TracedProgram& program() const { return program_; }

  private:
    support::TracedProgram program_;
    std::string watched_;
    bool on_fat_;
    bool renumbers_;
    std::uint64_t next_inode_ = 0x100000000;  ///< not the inode of any file
    bool Falsifies(const support::SystemCall& call);
    bool begun_ = false;
};

/// A run without faults, and all its file calls.
struct CleanRun {
    support::Outcome outcome;
    std::vector<IoCall> calls;
};

CleanRun RunCleanly(const Command& command);

/// The number of the first call after the last read that comes before any write.
std::size_t FirstAfterReading(const std::vector<IoCall>& calls);

/// The faults of a run.
struct Plan {
    std::size_t call = 0;  ///< counted from 0
    Fault fault;
    bool repeated = false;  ///< every later call of the same kind fails as well
};

struct FaultyOutcome {
    support::Outcome outcome;
    int injected = 0;              ///< number of faults
    bool printing_failed = false;  ///< whether standard output was hit
    /// Whether it could not remove its part file, or was told that another run holds it.
    bool part_abandoned = false;
};

FaultyOutcome RunWithFaults(const Command& command, const Plan& plan);

/// Kills the run at the entry of call `call`, counted from 0, or after half of that call if `half` is set.
/// Returns false if the run made fewer calls.
bool RunUntilKill(const Command& command, std::size_t call, bool half);

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_FAULTY_RUN_H
