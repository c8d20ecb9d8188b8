// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_OUTPUT_LOCKS_H
#define VELMARCON_BATCH_OUTPUT_LOCKS_H

#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "batch/trees.h"
#include "system/file_lock.h"

/// Keeps two runs from working on one output at the same time, whatever their states, or on outputs of which
/// one lies in the other.
class OutputLocks {
  public:
    /// Locks the state `folder` and the outputs of `trees`, until this object goes. Waits a few seconds for a
    /// run that was killed and whose workers are about to notice, and says so. Returns why another run has to
    /// be waited for, or an empty text. An output that cannot be locked keeps nobody waiting.
    [[nodiscard]] std::string Take(const std::string& folder, const std::vector<Tree>& trees);

    /// For what is to hold the locks together with this run.
    std::vector<int> Descriptors() const;

  private:
    [[nodiscard]] std::error_code Add(const std::string& path, FileLock::Hold hold);

    std::vector<std::unique_ptr<FileLock>> locks_;
};

#endif  // VELMARCON_BATCH_OUTPUT_LOCKS_H
