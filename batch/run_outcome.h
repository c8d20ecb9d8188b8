// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_RUN_OUTCOME_H
#define VELMARCON_BATCH_RUN_OUTCOME_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include "batch/batch_options.h"
#include "batch/checksum_lists.h"
#include "batch/jobs.h"
#include "batch/ledger.h"
#include "batch/picture.h"
#include "batch/plan.h"
#include "batch/records.h"
#include "batch/tally.h"

/// What has become of the pictures of a run. A picture is settled as soon as a worker has told of it. It
/// counts, in the tally and as a DNG that is safe, only when its DNG is on the disk.
class RunOutcome {
  public:
    /// Everything is owned by the caller. `plan` learns the options of DNGs that are kept.
    RunOutcome(const BatchOptions& options, std::span<const Tree> trees, std::span<const Picture> pictures,
               Plan& plan, Ledger& ledger, Tally& tally);

    /// Counts the pictures that the plan keeps without a look at them.
    void TakeKept();

    /// Settles the picture of `task` as a worker's record says.
    void Take(Record record, const Task& task);

    /// Settles a picture as failed: its worker died over it.
    void TakeDead(std::uint64_t picture);

    /// Has the system write the DNGs of settled pictures to the disk, if there are many or the last time is a
    /// while ago.
    void PutOnDiskNowAndThen();

    /// Does so at once. Whoever deletes originals after this run must not lose the DNGs to a power cut: what
    /// the disk did not take is not there, whatever the system's memory still holds of it.
    void PutOnDisk();

    /// Whether the run has a picture of this number that is not settled.
    bool IsOpen(std::uint64_t picture) const;
    std::size_t settled() const { return done_; }

    /// Pictures that are not settled.
    std::size_t unreached() const { return is_settled_.size() - done_; }

    /// Those of the settled ones that workers failed to convert.
    std::size_t failed() const { return failed_; }

    /// "PATH -> NAME" of pictures whose DNG got a number.
    const std::vector<std::string>& renamed() const { return renamed_; }

    const ChecksumLists& checksums() const { return checksums_; }

  private:
    std::string InputOfNumber(std::uint64_t picture) const;
    void Settle(std::uint64_t picture);
    std::vector<std::string> OptionsOf(const Record& record, const Task& task) const;
    void Doubt(const Record& record, const std::string& input);
    void TakeSync(Record& record, std::error_code error);
    void Count(const Record& record);

    const BatchOptions& options_;
    std::span<const Tree> trees_;
    std::span<const Picture> pictures_;
    Plan& plan_;
    Ledger& ledger_;
    Tally& tally_;
    std::vector<bool> is_settled_;  ///< by number of the picture
    std::size_t done_ = 0;
    std::size_t failed_ = 0;
    std::vector<Record> pending_;  ///< pictures whose DNGs are not known to be on the disk
    std::chrono::steady_clock::time_point synchronized_ = std::chrono::steady_clock::now();
    std::vector<std::string> renamed_;
    ChecksumLists checksums_;
};

#endif  // VELMARCON_BATCH_RUN_OUTCOME_H
