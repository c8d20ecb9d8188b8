// SPDX-License-Identifier: MIT
#include "batch/engine.h"

#include <algorithm>
#include <utility>

#include "batch/fields.h"
#include "batch/shown.h"
#include "batch/worker.h"
#include "system/file_system.h"
#include "system/running_process.h"

namespace {

std::string Range(std::uint64_t first, std::uint64_t last) {
    return std::to_string(first) + "-" + std::to_string(last);
}

/// A line for each job.
bool WriteNumbers(const std::string& path, std::uint64_t first, std::uint64_t last) {
    std::string numbers;
    for (std::uint64_t job = first; job <= last; ++job) {
        numbers += std::to_string(job) + "\n";
    }
    return !fields::WritePlain(path, numbers);
}

}  // namespace

bool Engine::StartNext() {
    if (ending_ || next_ == starts_.size()) {
        return false;
    }
    const ChildStart& start = starts_[next_++];
    child_ = std::make_unique<ChildProcess>();
    if (const std::error_code error = child_->Start(start)) {
        error_ = start.arguments.front() + " cannot be started: " + ErrorText(error);
        child_.reset();
        ending_ = true;
        return false;
    }
    return true;
}

bool Engine::Wait(unsigned int milliseconds) {
    if (child_ == nullptr && !StartNext()) {
        return false;
    }
    if (child_->WaitFor(milliseconds)) {
        child_.reset();
        return StartNext();
    }
    return true;
}

void Engine::AskToEnd() {
    constexpr auto patience = std::chrono::seconds(2);
    const auto now = std::chrono::steady_clock::now();
    if (child_ != nullptr && (!ending_ || now - asked_ > patience)) {
        child_->AskToEnd();
        asked_ = now;
    }
    ending_ = true;
}

std::string FindParallel() {
    std::string path = FindOnSearchPath("parallel");
    if (path.empty()) {
        return "";
    }
    // To look into it takes less time than to ask it.
    if (fields::ReadWhole(path).value_or("").find("GNU Parallel") != std::string::npos) {
        return path;
    }
    std::string printed;
    ChildStart ask;
    ask.arguments = {path, "--version"};
    (void)RunForOutput(ask, printed);
    return printed.starts_with("GNU parallel ") ? path : "";
}

void AddWorkerEnvironment(const std::string& program, const RunState& state, ChildStart& start) {
    start.environment.emplace_back(worker_environment::kState, state.folder());
    start.environment.emplace_back(worker_environment::kProgram, program);
    start.environment.emplace_back(worker_environment::kFront, std::to_string(running_process::Number()));
}

std::vector<ChildStart> WorkersInTurn(const std::string& program, const RunState& state, std::uint64_t first,
                                      std::uint64_t last) {
    constexpr std::uint64_t jobs_a_worker = 64;  // it looks at all their pictures before it begins
    std::vector<ChildStart> starts;
    for (std::uint64_t job = first; job <= last; job += jobs_a_worker) {
        ChildStart start;
        start.arguments = {program, kWorkerArgument, Range(job, std::min(last, job + jobs_a_worker - 1))};
        start.output = state.PathOf("messages");
        start.errors = start.output;
        start.kept = state.LockDescriptors();
        AddWorkerEnvironment(program, state, start);
        starts.push_back(std::move(start));
    }
    return starts;
}

ChildStart ParallelStart(const std::string& parallel, const RunState& state) {
    ChildStart start;
    start.arguments = {parallel, "--plain",   "--will-cite",       "--joblog",
                       "joblog", "--termseq", "TERM,5000,KILL,100"};
    start.folder = state.folder();
    start.output = state.PathOf("messages");
    start.errors = start.output;
    start.environment = {{"PARALLEL_SHELL", "/bin/sh"}, {"PARALLEL_HOME", state.PathOf("../.parallel")}};
    start.unset = {"PARALLEL"};
    return start;
}

ChildStart WorkersByParallel(const std::string& parallel, const std::string& program, const RunState& state,
                             std::uint64_t first, std::uint64_t last, unsigned int at_a_time) {
    ChildStart start = ParallelStart(parallel, state);
    (void)WriteNumbers(state.PathOf("numbers"), first, last);
    // The shell gets a job's number, and no names.
    const std::string command =
        "exec \"$" + std::string(worker_environment::kProgram) + "\" " + kWorkerArgument;
    for (const std::string& argument :
         {std::string("--ungroup"), std::string("--halt"), std::string("soon,fail=1"), std::string("--jobs"),
          std::to_string(at_a_time), std::string("-a"), std::string("numbers"), command}) {
        start.arguments.push_back(argument);
    }
    start.kept = state.LockDescriptors();
    AddWorkerEnvironment(program, state, start);
    return start;
}
