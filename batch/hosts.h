// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_HOSTS_H
#define VELMARCON_BATCH_HOSTS_H

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "batch/jobs.h"
#include "batch/records.h"
#include "batch/run_state.h"
#include "system/child_process.h"

/// Has other machines do jobs: GNU parallel takes the files of a job's pictures there by ssh and rsync, runs
/// velmarcon-batch next to them, and fetches the DNGs in one file, from which they are taken over here. The
/// names of pictures stand in files and never in a command.
class Hosts {
  public:
    Hosts(const RunState& state, std::string parallel, std::string program)
        : state_(state), parallel_(std::move(parallel)), program_(std::move(program)) {}

    /// Asks every host of the list whether it can do the work. Returns why one cannot, or an empty text;
    /// `is_usage` tells that the list is to blame.
    [[nodiscard]] std::string Ask(const std::string& list, bool& is_usage);

    /// Lays out what the hosts get, in jobs from `first` on. Returns the number of the last job, or 0 when
    /// that cannot be written.
    std::uint64_t LayOut(const WorkerSettings& settings, std::span<const Task> tasks, std::uint64_t first);

    /// The program that runs all of them.
    ChildStart Start() const;

    /// Takes over the DNG of a record that came from a host: it gets its name here, and the record its path.
    void TakeOver(const Task& task, bool refresh, bool keep_time, Record& record);

    /// Leaves nothing on the hosts.
    void CleanUp() const;

    std::size_t slots() const { return slots_; }

  private:
    struct SentPicture {
        std::uint64_t job = 0;
        std::string raw_state;
        std::string jpg_state;
        std::string bia_state;
    };

    std::string AskOne(const std::string& entry);
    std::string OnHost(const std::string& login, const std::string& command) const;
    bool LayOutJob(std::uint64_t job, std::span<const Task> tasks);
    bool HandOver(const WorkerSettings& settings);
    bool Link(const std::string& target, const std::string& name) const;
    std::string TakeDng(const Task& task, bool refresh, const Record& record) const;
    void CountDown(std::uint64_t job);

    const RunState& state_;
    std::string parallel_;
    std::string program_;
    std::string id_folder_;    ///< on the hosts, below the home folder: for this state
    std::string work_folder_;  ///< in it, for this run
    std::vector<std::string> entries_;
    std::vector<std::string> logins_;  ///< of other machines
    std::size_t slots_ = 0;            ///< jobs at a time, in all
    std::vector<std::string> given_;   ///< files that each host gets once
    std::uint64_t first_ = 1;
    std::uint64_t last_ = 0;
    std::map<std::uint64_t, SentPicture> sent_;       ///< by picture
    std::map<std::uint64_t, std::size_t> remaining_;  ///< pictures that are not back, by job
};

#endif  // VELMARCON_BATCH_HOSTS_H
