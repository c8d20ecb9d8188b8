// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_TASK_RUN_H
#define VELMARCON_BATCH_TASK_RUN_H

#include <cstdint>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "batch/batch_options.h"
#include "batch/engine.h"
#include "batch/hosts.h"
#include "batch/jobs.h"
#include "batch/progress.h"
#include "batch/record_files.h"
#include "batch/run_outcome.h"
#include "batch/run_state.h"

/// Hands the tasks of a run to workers, on this machine or on others, and takes what they tell of each.
class TaskRun {
  public:
    /// Everything is owned by the caller. `hosts` are the other machines, if any; `program` is the path of
    /// velmarcon-batch itself, which the workers are.
    TaskRun(const BatchOptions& options, std::string program, std::span<const Task> tasks, Hosts* hosts,
            const RunState& state, RunOutcome& outcome, Progress& progress);

    /// Returns after all tasks are settled, or when the run has to end before that: after a signal, with a
    /// full disk, or when no worker can be started. Returns the status for the latter, else kDone.
    [[nodiscard]] int Run(const WorkerSettings& settings);

    bool disk_is_full() const { return disk_is_full_; }

  private:
    [[nodiscard]] int WorkHere();
    [[nodiscard]] int WorkOnHosts(const WorkerSettings& settings);
    [[nodiscard]] int LookHere();
    [[nodiscard]] int RefuseState() const;
    [[nodiscard]] bool HasToEnd() const;
    std::vector<const Task*> TasksLeft() const;
    std::uint64_t WriteJobs(std::span<const Task* const> tasks, unsigned int at_a_time);
    [[nodiscard]] int Drive(Engine& engine);
    void TellStop();
    void TakeRecords();
    void TakeRecord(Record record);
    void BlameTheDead();

    const BatchOptions& options_;
    std::string program_;
    std::span<const Task> tasks_;
    Hosts* hosts_;
    const RunState& state_;
    RunOutcome& outcome_;
    Progress& progress_;
    RecordFiles record_files_;
    std::unordered_map<std::uint64_t, const Task*> task_of_;  ///< by number of the picture
    std::uint64_t next_job_ = 1;
    std::set<std::uint64_t> begun_;  ///< pictures that a worker is at, or was when it died
    bool disk_is_full_ = false;
    bool told_stop_ = false;
};

#endif  // VELMARCON_BATCH_TASK_RUN_H
