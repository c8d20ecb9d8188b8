// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_TREE_RUN_H
#define VELMARCON_BATCH_TREE_RUN_H

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "batch/batch_options.h"
#include "batch/batch_run.h"
#include "batch/engine.h"
#include "batch/hosts.h"
#include "batch/picture_search.h"
#include "batch/plan.h"
#include "batch/progress.h"
#include "batch/record_files.h"
#include "batch/run_state.h"
#include "batch/tally.h"
#include "batch/trees.h"

/// One run over trees of folders, from the search to the summary.
class TreeRun {
  public:
    /// `list` holds the names of the pictures that are wanted, each ended by a NUL, if the options name a
    /// list. `databases` is the folder of the databases, or empty while nothing has needed them. All is owned
    /// by the caller.
    TreeRun(const BatchOptions& options, const std::vector<Tree>& trees, const std::string& list,
            const Installation& installation, std::string databases);

    /// Returns the exit status.
    int Run();

  private:
    void Say(const std::string& text) const;
    void Search();
    std::string PlanOf(const Picture& picture) const;
    int ListPlan() const;
    [[nodiscard]] int Begin();
    [[nodiscard]] int CheckSpace() const;
    void FindDatabases();
    void Announce() const;
    void TakeKept();
    [[nodiscard]] int Work();
    [[nodiscard]] int AskHosts();
    [[nodiscard]] int WorkHere();
    [[nodiscard]] int WorkOnHosts();
    std::uint64_t WriteJobs(const std::vector<const Task*>& tasks, unsigned int at_a_time);
    [[nodiscard]] int Drive(Engine& engine);
    void TakeRecords();
    void TakeRecord(Record record);
    std::vector<std::string> OptionsOf(const Record& record, const Task& done) const;
    void BlameTheDead();
    std::vector<const Task*> TasksLeft() const;
    void PutOnDisk();
    void Doubt(const Record& record, const std::string& input);
    void Settle(const Record& record);
    void WriteChecksumFiles();
    [[nodiscard]] int Summarise();
    void TellFailures() const;
    void TellRenamed() const;
    void TellRemarks() const;
    void TellNearMisses() const;
    void TellJpegs() const;
    bool AllWasFound() const;
    void TellEnd();
    [[nodiscard]] int TellUnreached(std::size_t unreached) const;
    void Notify(int status) const;
    std::string InputOfNumber(std::uint64_t number) const;
    WorkerSettings SettingsForWorkers() const;
    std::size_t Unreached() const;

    const BatchOptions& options_;
    const std::vector<Tree>& trees_;
    const std::string& list_;
    const Installation& installation_;
    std::string databases_;
    RunState state_;
    FoundPictures found_;
    std::vector<std::string> not_found_;  ///< names of the list that are no picture
    Plan plan_;
    Tally tally_;
    std::unique_ptr<Progress> progress_;
    std::unique_ptr<RecordFiles> record_files_;
    std::unique_ptr<Hosts> hosts_;
    std::uint64_t next_job_ = 1;
    std::vector<bool> settled_;      ///< by number of the picture
    std::set<std::uint64_t> begun_;  ///< pictures that a worker is at, or was when it died
    std::unordered_map<std::uint64_t, std::size_t> task_of_;  ///< by number of the picture
    std::vector<std::string> renamed_;  ///< "PATH -> NAME" of pictures whose DNG has a number
    std::vector<Record> pending_;       ///< pictures whose DNGs are not known to be on the disk
    std::chrono::steady_clock::time_point synchronized_;
    std::size_t done_ = 0;
    std::size_t seen_failed_ = 0;
    std::size_t not_on_disk_ = 0;
    bool disk_full_ = false;
    bool told_stop_ = false;
    bool report_written_ = true;
    std::map<std::string, std::map<std::string, std::string>> sums_;  ///< by folder and name; empty: outdated
};

#endif  // VELMARCON_BATCH_TREE_RUN_H
