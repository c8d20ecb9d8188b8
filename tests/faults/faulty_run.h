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

/// How the program is started.
struct Command {
    std::vector<std::string> arguments;
    std::string folder;      ///< current folder
    std::string name;        ///< argv[0]
    std::string watched;     ///< path of the folder from whose first use on calls are counted
    bool on_fat = false;     ///< the program is told that its files are on a FAT file system
    bool renumbers = false;  ///< it is told another inode number each time that it asks
    std::string program = VELMARCON_PROGRAM;
};

/// A run of the program that goes from one call on files to the next. What the dynamic loader does is not
/// counted.
class IoRun {
  public:
    explicit IoRun(const Command& command);

    /// The next call on files, at whose entry it then stands; nothing when it has ended.
    std::optional<IoCall> NextCall();

    /// Lets it run to its end.
    void Finish();

    support::TracedProgram& program() { return program_; }
    const support::TracedProgram& program() const { return program_; }

  private:
    support::TracedProgram program_;
    std::string watched_;
    bool on_fat_;
    bool renumbers_;
    std::uint64_t next_inode_ = 0x100000000;  ///< that no file has
    bool Deceives(const support::SystemCall& call);
    bool begun_ = false;
};

/// A run in which nothing goes wrong, and all the calls on files that it makes.
struct CleanRun {
    support::Outcome outcome;
    std::vector<IoCall> calls;
};

CleanRun RunCleanly(const Command& command);

/// The number of the first call behind the last that reads before anything is written.
std::size_t FirstBehindReading(const std::vector<IoCall>& calls);

/// What goes wrong in a run.
struct Plan {
    std::size_t call = 0;  ///< from 0 on
    Fault fault;
    bool repeated = false;  ///< also with every later call of the same kind
};

struct FaultyOutcome {
    support::Outcome outcome;
    int injected = 0;              ///< faults
    bool printing_failed = false;  ///< standard output was hit
    bool part_abandoned = false;   ///< it could not remove its part, or was told that it is another run's
};

FaultyOutcome RunWithFaults(const Command& command, const Plan& plan);

/// Kills the run at the entry of call `call`, counted from 0; with `half`, after half of that call. Returns
/// false when it made fewer calls.
bool RunUntilKill(const Command& command, std::size_t call, bool half);

}  // namespace faults

#endif  // VELMARCON_TESTS_FAULTS_FAULTY_RUN_H
