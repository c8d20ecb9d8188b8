// SPDX-License-Identifier: MIT
#include "batch/task_run.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <thread>
#include <utility>

#include "batch/batch_run.h"
#include "batch/conversion_options.h"
#include "batch/shown.h"
#include "batch/told_lines.h"
#include "system/file_system.h"
#include "system/stop_request.h"

namespace {

unsigned int Cores() {
    return std::max(std::thread::hardware_concurrency(), 1U);
}

}  // namespace

TaskRun::TaskRun(const BatchOptions& options, std::string program, std::span<const Task> tasks, Hosts* hosts,
                 const RunState& state, RunOutcome& outcome, Progress& progress)
    : options_(options),
      program_(std::move(program)),
      tasks_(tasks),
      hosts_(hosts),
      state_(state),
      outcome_(outcome),
      progress_(progress),
      record_files_(state.PathOf("records")) {
    for (const Task& task : tasks_) {
        task_of_[task.picture] = &task;
    }
}

int TaskRun::Run(const WorkerSettings& settings) {
    if (jobs::WriteSettings(jobs::SettingsOf(state_.folder()), settings)) {
        return RefuseState();
    }
    if (tasks_.empty()) {
        return batch_status::kDone;
    }
    return hosts_ != nullptr ? WorkOnHosts(settings) : WorkHere();
}

int TaskRun::RefuseState() const {
    return told_lines::Refuse(batch_status::kNotBegun, "nothing can be written to " + Shown(state_.folder()));
}

bool TaskRun::HasToEnd() const {
    return disk_is_full_ || stop_request::Signal() != 0;
}

/// Pictures that a worker died over are not tried again; those that it did not come to are.
int TaskRun::WorkHere() {
    std::vector<const Task*> left = TasksLeft();
    const unsigned int at_a_time = options_.jobs > 0 ? options_.jobs : Cores();
    const bool is_shared = at_a_time > 1 && left.size() > 1;
    const std::string parallel = is_shared ? FindParallel() : "";
    if (is_shared && parallel.empty()) {
        told_lines::Say(options_.quiet, "One picture after the other: GNU parallel is not installed");
    }
    while (!left.empty()) {
        const std::uint64_t first = next_job_;
        const std::uint64_t last = WriteJobs(left, parallel.empty() ? 1 : at_a_time);
        if (last == 0) {
            return RefuseState();
        }
        Engine engine(parallel.empty() ? WorkersInTurn(program_, state_, first, last)
                                       : std::vector{WorkersByParallel(parallel, program_, state_, first,
                                                                       last, at_a_time)});
        if (const int status = Drive(engine); status != batch_status::kDone) {
            return status;
        }
        BlameTheDead();
        const std::size_t before = left.size();
        left = TasksLeft();
        if (left.size() == before || HasToEnd()) {
            break;
        }
    }
    return batch_status::kDone;
}

int TaskRun::WorkOnHosts(const WorkerSettings& settings) {
    if (const int status = LookHere(); status != batch_status::kDone) {
        return status;
    }
    std::vector<Task> left;
    for (const Task* const task : TasksLeft()) {
        left.push_back(*task);
    }
    int status = batch_status::kDone;
    if (!left.empty() && stop_request::Signal() == 0) {
        const std::uint64_t last = hosts_->LayOut(settings, left, next_job_);
        if (last == 0) {
            return RefuseState();
        }
        next_job_ = last + 1;
        std::vector<ChildStart> starts;
        starts.push_back(hosts_->Start());
        Engine engine(std::move(starts));
        status = Drive(engine);
        begun_.clear();
    }
    hosts_->CleanUp();
    return status;
}

/// What is decided by a look at the files that are here needs no other machine.
int TaskRun::LookHere() {
    std::vector<Task> look;
    for (Task task : tasks_) {
        if (file_system::IsTaken(task.dng) || !task.input.ends_with(".RAW")) {
            task.mode = task.mode == TaskMode::kConvert ? TaskMode::kLook : task.mode;
            look.push_back(std::move(task));
        }
    }
    if (look.empty()) {
        return batch_status::kDone;
    }
    std::vector<const Task*> tasks;
    std::ranges::transform(look, std::back_inserter(tasks), [](const Task& task) { return &task; });
    const std::uint64_t first = next_job_;
    const std::uint64_t last = WriteJobs(tasks, 1);
    if (last == 0) {
        return RefuseState();
    }
    Engine engine(WorkersInTurn(program_, state_, first, last));
    if (const int status = Drive(engine); status != batch_status::kDone) {
        return status;
    }
    BlameTheDead();
    return batch_status::kDone;
}

std::vector<const Task*> TaskRun::TasksLeft() const {
    std::vector<const Task*> left;
    for (const Task& task : tasks_) {
        if (outcome_.IsOpen(task.picture)) {
            left.push_back(&task);
        }
    }
    return left;
}

/// Returns the number of the last job, or 0 if one cannot be written.
std::uint64_t TaskRun::WriteJobs(std::span<const Task* const> tasks, unsigned int at_a_time) {
    constexpr std::size_t most = 64;
    constexpr std::size_t jobs_each = 4;  // so that all end at about the same time
    const std::size_t per_job =
        std::clamp<std::size_t>(tasks.size() / (std::size_t{at_a_time} * jobs_each), 1, most);
    for (std::size_t at = 0; at < tasks.size(); at += per_job) {
        std::vector<Task> job;
        for (const Task* const task : tasks.subspan(at, std::min(per_job, tasks.size() - at))) {
            job.push_back(*task);
        }
        if (jobs::Write(jobs::FileOf(state_.folder(), next_job_++), job)) {
            return 0;
        }
    }
    return next_job_ - 1;
}

/// Until the engine has ended, or a signal or a full disk asks it to.
int TaskRun::Drive(Engine& engine) {
    constexpr unsigned int often = 100;
    bool at_work = true;
    while (at_work) {
        at_work = engine.Wait(often);
        TakeRecords();
        TellStop();
        if (HasToEnd()) {
            engine.AskToEnd();
        } else {
            progress_.Show(outcome_.settled(), outcome_.failed());
        }
    }
    progress_.Clear();
    return engine.error().empty() ? batch_status::kDone
                                  : told_lines::Refuse(batch_status::kNotBegun, engine.error());
}

void TaskRun::TellStop() {
    const int signal = stop_request::Signal();
    if (signal != 0 && !std::exchange(told_stop_, true)) {
        progress_.Clear();
        (void)std::fprintf(stderr, "Stopping (%s): pictures that were begun are finished first\n",
                           stop_request::Name(signal));
    }
}

void TaskRun::TakeRecords() {
    for (Record& record : record_files_.TakeNew()) {
        if (outcome_.IsOpen(record.picture)) {
            TakeRecord(std::move(record));
        }
    }
    outcome_.PutOnDiskNowAndThen();
}

void TaskRun::TakeRecord(Record record) {
    const auto found = task_of_.find(record.picture);
    if (record.verdict == Verdict::kBegun || found == task_of_.end()) {
        begun_.insert(record.picture);
        return;
    }
    begun_.erase(record.picture);
    if (record.verdict == Verdict::kDiskFull) {
        disk_is_full_ = true;
        return;
    }
    const Task& task = *found->second;
    if (hosts_ != nullptr) {
        const bool refresh = conversion_options::Settings(options_.conversion).refresh;
        hosts_->TakeOver(task, refresh, options_.keep_time, record);
    }
    outcome_.Take(std::move(record), task);
}

/// A worker that was killed, by the system for want of memory or by a fault of its own, was at work on a
/// picture.
void TaskRun::BlameTheDead() {
    if (HasToEnd()) {
        return;
    }
    for (const std::uint64_t picture : begun_) {
        outcome_.TakeDead(picture);
    }
    begun_.clear();
}
