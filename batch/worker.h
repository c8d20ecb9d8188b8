// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_WORKER_H
#define VELMARCON_BATCH_WORKER_H

#include <span>
#include <string>

/// What the front and its workers call each other by: variables of the environment.
namespace worker_environment {

constexpr const char* kState = "VELMARCON_BATCH_STATE";  ///< folder of the state; not set on another machine
constexpr const char* kFront = "VELMARCON_BATCH_FRONT";  ///< number of the front's process
constexpr const char* kProgram = "VELMARCON_BATCH_PROGRAM";  ///< the program that a job runs on this machine

}  // namespace worker_environment

/// The argument that makes the program a worker. Jobs are named after it, by their numbers or "FIRST-LAST".
constexpr const char* kWorkerArgument = "--worker";

/// Does the jobs. Returns the exit status: 0, also when pictures failed; 1 when no more jobs are to be begun,
/// for want of a front, of room on the disk or of a state.
int RunWorker(std::span<const std::string> job_names);

#endif  // VELMARCON_BATCH_WORKER_H
