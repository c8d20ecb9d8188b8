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

/// Runs a program from one system call to the next and can make its calls fail. A program that does not end
/// is ended by SIGALRM after some minutes.
class TracedProgram {
  public:
    /// Why programs can't be traced, or their calls changed, on this system; empty if they can.
    static std::string Obstacle();

    /// Starts the program and stops it before its first instruction.
    explicit TracedProgram(const std::string& program, const std::vector<std::string>& arguments,
                           const Start& start = {});
    /// Kills the program if it is still running.
    ~TracedProgram();
    TracedProgram(const TracedProgram&) = delete;
    TracedProgram& operator=(const TracedProgram&) = delete;
    TracedProgram(TracedProgram&&) = delete;
    TracedProgram& operator=(TracedProgram&&) = delete;

    /// Makes the call at whose entry the program is stopped, if any, and continues to the entry of the next
    /// call. Returns std::nullopt if the program ended first.
    std::optional<SystemCall> NextCall();

    // At the entry of a call:

    /// Continues to the exit of the call. Returns whether there is one: some calls end the program.
    bool FinishCall();
    /// Makes the call fail with `error` without executing it.
    void FailCall(int error);
    /// Executes the call, but makes it return the failure `error`.
    void FailFinishedCall(int error);
    /// Executes the call with another value for one argument.
    void FinishCallWith(std::size_t index, std::uint64_t value);

    /// Lets the program run to its end.
    void Finish();
    void Kill();

    /// How the program ended; the peak memory is not set.
    Outcome outcome() const;
    /// Process number; 0 after the program has ended.
    pid_t process() const { return process_; }

    /// The text at `address` in the program's memory, up to its NUL or as far as it can be read.
    std::string TextAt(std::uint64_t address) const;
    /// Copies `bytes.size()` bytes from or to the program's memory. Returns whether all were copied.
    bool ReadMemory(std::uint64_t address, std::span<std::uint8_t> bytes) const;
    bool WriteMemory(std::uint64_t address, std::span<const std::uint8_t> bytes) const;

  private:
    void Resume(int request);
    bool AtCall();
    void WaitForStop();

    TempFolder logs_;
    pid_t process_ = 0;
    int status_ = 0;  ///< the last status from waitpid
};

}  // namespace support

#endif  // VELMARCON_TESTS_SUPPORT_TRACED_PROGRAM_H
