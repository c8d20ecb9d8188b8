// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_RUN_STATE_H
#define VELMARCON_BATCH_RUN_STATE_H

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "batch/batch_options.h"
#include "batch/ledger.h"
#include "batch/output_locks.h"
#include "batch/trees.h"

/// What runs into the same output leave for each other, in a folder that only its user may enter. There are
///
///   ledger             the DNGs that are known
///   report             every picture and what became of it, to be read
///   joblog             of GNU parallel
///   messages           what parallel, ssh and rsync said
///   settings, jobs/    for the workers
///   records/           from the workers
///   begun              when the run began, and with which options; gone when it came to its end
///   refreshed          DNGs that interrupted runs with -r have made anew
///   command            folders and options of the last run that converted
///   id, sent/, back/   for other machines
///   lock               held by the run and what it starts
class RunState {
  public:
    /// Makes the folder and keeps other runs into the same output out of it. Returns why that cannot be, or
    /// an empty text.
    [[nodiscard]] std::string Open(const BatchOptions& options, const std::vector<Tree>& trees);

    /// After Open: takes over what an interrupted run has left, and begins a new one. One that only verifies
    /// leaves it for the next. Returns as Open does.
    [[nodiscard]] std::string Begin(const BatchOptions& options, const std::vector<Tree>& trees);

    /// The run came to its end: nothing is left to go on with.
    void End();

    /// For what is to hold the locks with this run.
    std::vector<int> LockDescriptors() const { return locks_.Descriptors(); }

    const std::string& folder() const { return folder_; }
    std::string PathOf(const std::string& name) const { return folder_ + "/" + name; }
    Ledger& ledger() { return ledger_; }
    const Ledger& ledger() const { return ledger_; }

    /// DNGs that this command has refreshed before it was interrupted.
    const std::unordered_set<std::string>& refreshed() const { return refreshed_; }

    /// When the run before, which was interrupted, began: seconds since 1970.
    std::optional<std::int64_t> interrupted_since() const { return interrupted_since_; }

  private:
    void TakeInterrupted(bool goes_on);
    [[nodiscard]] bool Clear() const;
    [[nodiscard]] bool NoteBegin(const std::string& command,
                                 const std::vector<std::string>& conversion) const;
    void TakeRecords(const std::vector<std::string>& options, bool goes_on);
    void TakeRecordsOf(const std::string& job, const std::vector<std::string>& options, bool goes_on);
    [[nodiscard]] bool KeepRefreshed() const;

    std::string parent_;
    std::string folder_;
    OutputLocks locks_;
    Ledger ledger_;
    std::unordered_set<std::string> refreshed_;
    std::optional<std::int64_t> interrupted_since_;
    bool keeps_interrupted_ = false;  ///< this run only verifies
};

#endif  // VELMARCON_BATCH_RUN_STATE_H
