// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_ENGINE_H
#define VELMARCON_BATCH_ENGINE_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "batch/run_state.h"
#include "system/child_process.h"

/// Runs the programs that do the work, one after the other: one GNU parallel, or workers in turn.
class Engine {
  public:
    explicit Engine(std::vector<ChildStart> starts) : starts_(std::move(starts)) {}

    /// Waits up to `milliseconds`. Returns whether something is still at work.
    bool Wait(unsigned int milliseconds);

    /// Has everything end, and begins nothing more. Called again, it asks once more after a while: old
    /// versions of GNU parallel take the first request for a wish to begin no more jobs.
    void AskToEnd();

    /// Why the last program could not be started; empty when all could.
    const std::string& error() const { return error_; }

  private:
    bool StartNext();

    std::vector<ChildStart> starts_;
    std::size_t next_ = 0;
    std::unique_ptr<ChildProcess> child_;
    bool ending_ = false;
    std::chrono::steady_clock::time_point asked_;
    std::string error_;
};

/// Where GNU parallel is; empty when it is not installed. Debian's moreutils has another program by that
/// name.
std::string FindParallel();

/// Workers on this machine, one after the other, for the jobs from 1 to `last`.
std::vector<ChildStart> WorkersInTurn(const std::string& program, const RunState& state, std::uint64_t first,
                                      std::uint64_t last);

/// What every GNU parallel is started with: nothing of the user's own settings.
ChildStart ParallelStart(const std::string& parallel, const RunState& state);

/// The same jobs by GNU parallel, `at_a_time` at a time.
ChildStart WorkersByParallel(const std::string& parallel, const std::string& program, const RunState& state,
                             std::uint64_t first, std::uint64_t last, unsigned int at_a_time);

/// What a worker on this machine finds in its environment.
void AddWorkerEnvironment(const std::string& program, const RunState& state, ChildStart& start);

#endif  // VELMARCON_BATCH_ENGINE_H
