// SPDX-License-Identifier: MIT
#ifndef VELMARCON_TESTS_SUPPORT_TRACED_PROGRAM_H
#define VELMARCON_TESTS_SUPPORT_TRACED_PROGRAM_H

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/program.h"

namespace support {

/// A system call that a program is about to make.
struct SystemCall {
    std::uint64_t number = 0;
    std::array<std::uint64_t, 6> arguments = {};
};

/// A program that runs from one of its system calls to the next, and whose calls can be made to fail. One
/// that does not end is ended by SIGALRM after some minutes.
class TracedProgram {
  public:
    /// Why programs can't be traced here, or their calls not be changed; empty: they can.
    static std::string Obstacle();

    /// Starts the program; it stands before its first instruction.
    explicit TracedProgram(const std::string& program, const std::vector<std::string>& arguments,
                           const Start& start = {});
    /// Kills it if it still runs.
    ~TracedProgram();
    TracedProgram(const TracedProgram&) = delete;
    TracedProgram& operator=(const TracedProgram&) = delete;
    TracedProgram(TracedProgram&&) = delete;
    TracedProgram& operator=(TracedProgram&&) = delete;

    /// Runs on to the entry of its next call; nothing when it ended on the way. A call at whose entry it
    /// stands is made.
    std::optional<SystemCall> NextCall();

    // At the entry of a call:

    /// Runs to the end of the call. Returns whether there was one: some calls end the program.
    bool FinishCall();
    /// The call fails with `error`, without being made.
    void FailCall(int error);
    /// The call is made, but tells that it has failed with `error`.
    void FailFinishedCall(int error);
    /// The call is made with another value of one of its arguments.
    void FinishCallWith(std::size_t index, std::uint64_t value);

    /// Lets it run to its end.
    void Finish();
    void Kill();

    /// How it ended; without the peak of its memory.
    Outcome outcome() const;
    /// Process number; 0 once it has ended.
    pid_t process() const { return process_; }

    /// The text at `address` in the program's memory, up to its NUL; as much as can be read.
    std::string TextAt(std::uint64_t address) const;
    /// Copies `bytes.size()` bytes from and to the program's memory. Returns whether all could be copied.
    bool ReadMemory(std::uint64_t address, std::span<std::uint8_t> bytes) const;
    bool WriteMemory(std::uint64_t address, std::span<const std::uint8_t> bytes) const;

  private:
    void Resume(int request);
    bool AtCall();
    void WaitForStop();

    TempFolder logs_;
    pid_t process_ = 0;
    int status_ = 0;  ///< as waitpid gave it last
};

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_TRACED_PROGRAM_H
