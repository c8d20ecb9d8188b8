// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_TREE_RUN_H
#define VELMARCON_BATCH_TREE_RUN_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "batch/batch_options.h"
#include "batch/batch_run.h"
#include "batch/hosts.h"
#include "batch/jobs.h"
#include "batch/picture_search.h"
#include "batch/plan.h"
#include "batch/run_outcome.h"
#include "batch/run_state.h"
#include "batch/run_summary.h"
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
    [[nodiscard]] int Run();

  private:
    void Search();
    [[nodiscard]] int Begin();
    [[nodiscard]] int OpenReport();
    [[nodiscard]] int AskHosts();
    void FindDatabases();
    void Announce() const;
    [[nodiscard]] int CheckSpace() const;
    [[nodiscard]] int WorkAndTell();
    WorkerSettings SettingsForWorkers() const;
    [[nodiscard]] int End(const RunResult& result, bool all_written);

    const BatchOptions& options_;
    const std::vector<Tree>& trees_;
    const std::string& list_;
    const Installation& installation_;
    std::string databases_;
    RunState state_;
    FoundPictures found_;
    Tally tally_;
    std::unique_ptr<Hosts> hosts_;
    Plan plan_;
};

#endif  // VELMARCON_BATCH_TREE_RUN_H
