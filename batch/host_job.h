// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_HOST_JOB_H
#define VELMARCON_BATCH_HOST_JOB_H

#include <cstdint>
#include <span>
#include <string>

/// A job on another machine. What it needs lies in the folder where it is started:
///
///   settings           of the run
///   data/              the databases
///   sent/JOB/job       its pictures; their inputs have the names of their files only
///   sent/JOB/N.RAW     the files of the Nth of them, from 0 on: .RAW, also of a camera's DNG, .JPG, .BIA
///
/// What it leaves is the file back/JOB: the DNGs, one after the other. Its records go to standard output; in
/// them the path of a DNG is where it begins in that file and how long it is, both in bytes.
namespace host_job {

constexpr const char* kSettings = "settings";
constexpr const char* kData = "data";
constexpr const char* kSent = "sent";
constexpr const char* kBack = "back";
constexpr const char* kJob = "job";

/// Name of a file of the Nth picture, in the job's folder.
std::string FileOf(std::size_t number, const std::string& extension);

}  // namespace host_job

/// Does the jobs. Returns the exit status: 1, without records, when a job's files have not arrived, so that
/// it is sent once more.
int RunHostJobs(std::span<const std::uint64_t> job_numbers);

#endif  // VELMARCON_BATCH_HOST_JOB_H
