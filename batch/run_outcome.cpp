// SPDX-License-Identifier: MIT
#include "batch/run_outcome.h"

#include <iterator>
#include <sstream>
#include <system_error>
#include <utility>

#include "batch/copy_time.h"
#include "batch/shown.h"
#include "system/file_system.h"
#include "system/folder_tools.h"
#include "system/stop_request.h"

RunOutcome::RunOutcome(const BatchOptions& options, std::span<const Tree> trees,
                       std::span<const Picture> pictures, Plan& plan, Ledger& ledger, Tally& tally)
    : options_(options),
      trees_(trees),
      pictures_(pictures),
      plan_(plan),
      ledger_(ledger),
      tally_(tally),
      is_settled_(pictures.size()) {}

void RunOutcome::TakeKept() {
    for (std::size_t i = 0; i < plan_.kept.size(); ++i) {
        Record record;
        record.verdict = Verdict::kKept;
        record.picture = plan_.kept[i];
        record.flaws = plan_.flaws[i];
        record.sha256 = plan_.sums[i];
        record.dng = DngOf(pictures_[static_cast<std::size_t>(record.picture)], trees_);
        const std::string input = InputOfNumber(record.picture);
        if (options_.keep_time && CopyTime(input, record.dng)) {
            auto entry = ledger_.Find(record.dng).value_or(LedgerEntry());
            entry.dng_state = FullStateText(record.dng);
            (void)ledger_.Add(record.dng, entry);
        }
        Settle(record.picture);
        tally_.Take(record, input);
    }
}

void RunOutcome::Take(Record record, const Task& task) {
    Settle(record.picture);
    if (record.verdict == Verdict::kFailed) {
        ++failed_;
        Doubt(record, task.input);
        Count(record);
        return;
    }
    const bool was_made = record.verdict == Verdict::kConverted;
    const std::vector<std::string> made_with = OptionsOf(record, task);
    if (!was_made && (task.mode != TaskMode::kVerify || !options_.conversion.empty())) {
        plan_.CountOptions(made_with, options_.conversion);
    }
    LedgerEntry entry = EntryOf(record, task.input, made_with);
    if (was_made && options_.no_verify) {
        entry.fingerprint.clear();  // another machine needs one for the way
    }
    (void)ledger_.Add(record.dng, entry);
    pending_.push_back(std::move(record));
}

void RunOutcome::TakeDead(std::uint64_t picture) {
    Record record;
    record.picture = picture;
    record.Fail("the worker was killed or crashed while it was at work on this picture",
                "the worker was killed or crashed");
    Settle(picture);
    ++failed_;
    Count(record);
}

void RunOutcome::PutOnDiskNowAndThen() {
    constexpr std::size_t group = 500;
    constexpr auto interval = std::chrono::seconds(60);
    const bool is_late = std::chrono::steady_clock::now() - synchronized_ > interval;
    if (pending_.size() >= group || (is_late && !pending_.empty())) {
        PutOnDisk();
    }
}

void RunOutcome::PutOnDisk() {
    std::vector<std::string> files;
    files.reserve(pending_.size());
    for (const Record& record : pending_) {
        files.push_back(record.dng);
    }
    const std::vector<std::error_code> errors = stop_request::Signal() == 0
                                                    ? folder_tools::PutOnDisk(files)
                                                    : std::vector<std::error_code>(files.size());
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        TakeSync(pending_[i], errors[i]);
        Count(pending_[i]);
    }
    pending_.clear();
    synchronized_ = std::chrono::steady_clock::now();
}

bool RunOutcome::IsOpen(std::uint64_t picture) const {
    return picture < is_settled_.size() && !is_settled_[static_cast<std::size_t>(picture)];
}

std::string RunOutcome::InputOfNumber(std::uint64_t picture) const {
    return InputOf(pictures_[static_cast<std::size_t>(picture)], trees_);
}

void RunOutcome::Settle(std::uint64_t picture) {
    is_settled_[static_cast<std::size_t>(picture)] = true;
    ++done_;
}

/// Those that the DNG was made with, as far as that is known.
std::vector<std::string> RunOutcome::OptionsOf(const Record& record, const Task& task) const {
    if (record.verdict == Verdict::kConverted) {
        return options_.conversion;
    }
    if (record.made_with.starts_with(kAsSupposed)) {
        return task.options;
    }
    if (record.made_with.starts_with(kGuessed)) {
        std::istringstream words(record.made_with.substr(1));
        return {std::istream_iterator<std::string>(words), std::istream_iterator<std::string>()};
    }
    const auto known = ledger_.Find(record.dng);
    return known && known->source == task.input ? known->options : UnknownOptions();
}

/// Whatever its file looks like, the DNG is compared in later runs, too, until it is as it must be.
void RunOutcome::Doubt(const Record& record, const std::string& input) {
    auto entry = ledger_.Find(record.dng);
    const bool is_known = entry && entry->source == input;
    if (!is_known && record.made_with.starts_with(kDiffers)) {
        entry = EntryOf(record, input, UnknownOptions());
    } else if (!is_known) {
        return;
    }
    entry->on_disk = false;
    (void)ledger_.Add(record.dng, *entry);
}

/// Takes what the system said when it was to put the record's DNG on the disk.
void RunOutcome::TakeSync(Record& record, std::error_code error) {
    if (error) {
        const std::string reason = ErrorText(error);
        if (record.verdict == Verdict::kConverted && record.dng != InputOfNumber(record.picture)) {
            file_system::Remove(record.dng);
        }
        (void)ledger_.Remove(record.dng);
        record.Fail("the system could not write its DNG to the disk: " + reason,
                    "not on the disk: " + reason);
    } else if (auto entry = ledger_.Find(record.dng); entry && stop_request::Signal() == 0) {
        entry->on_disk = true;
        (void)ledger_.Add(record.dng, *entry);
    }
}

void RunOutcome::Count(const Record& record) {
    const std::string input = InputOfNumber(record.picture);
    tally_.Take(record, input);
    if (record.verdict != Verdict::kFailed &&
        NameIn(record.dng) != WithoutExtension(NameIn(input)) + ".DNG") {
        renamed_.push_back(Shown(input) + " -> " + Shown(NameIn(record.dng)));
        tally_.Note("renamed: " + renamed_.back());
    }
    // The line of a DNG that was replaced is outdated.
    if (record.verdict == Verdict::kConverted ||
        (record.verdict == Verdict::kKept && !record.sha256.empty())) {
        checksums_.Set(record.dng, record.sha256);
    }
}
