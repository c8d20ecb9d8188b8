// SPDX-License-Identifier: MIT
#include "batch/plan.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "batch/conversion_options.h"
#include "batch/file_facts.h"
#include "batch/folder_checksums.h"
#include "batch/numbered_name.h"
#include "batch/picture_files.h"
#include "batch/records.h"
#include "system/file_state.h"

namespace {

constexpr std::int64_t kCoarsestTick = 2;  ///< seconds

std::int64_t LastChange(const FileState& state) {
    return std::max(state.modified_seconds, state.changed_seconds);
}

/// Whether the DNG and the files that it was made of are as they were then.
bool IsUntouched(const LedgerEntry& entry, const std::string& dng) {
    const PictureFiles files(entry.source);
    return FullStateText(dng) == entry.dng_state && SameState(entry.raw_state, StateText(files.input)) &&
           (files.is_camera_dng || (SameState(entry.jpg_state, StateText(files.Jpg())) &&
                                    SameState(entry.bia_state, StateText(files.DarkFrame()))));
}

/// Sorts the pictures out.
class Planner {
  public:
    Planner(const BatchOptions& options, const RunState& state, const Ledger& ledger)
        : options_(options), state_(state), ledger_(ledger) {
        refresh_ = conversion_options::Settings(options.conversion).refresh;
    }

    void Add(std::uint64_t number, const std::string& input, const std::string& dng) {
        const auto entry = FindOwn(input, dng);
        if (options_.verify) {
            AddToProve(number, TaskMode::kVerify, input, dng, entry);
        } else if (refresh_) {
            AddToRefresh(number, input, dng);
        } else if (entry && entry->on_disk && WasCompared(*entry) && IsUntouched(*entry, dng)) {
            Keep(number, input, dng, *entry);
        } else {
            AddUnknown(number, input, dng, entry);
        }
    }

    Plan& plan() { return plan_; }

  private:
    /// Of the picture's DNG, or of the one that was given another name.
    std::optional<LedgerEntry> FindOwn(const std::string& input, const std::string& dng) const {
        auto entry = ledger_.Find(dng);
        for (int i = kFirstNumber; options_.rename && i <= kLastNumber && !(entry && entry->source == input);
             ++i) {
            entry = ledger_.Find(WithNumber(dng, i));
        }
        return entry && entry->source == input ? entry : std::nullopt;
    }

    /// In a run that compares what it makes, no DNG counts that was never compared.
    bool WasCompared(const LedgerEntry& entry) const {
        return options_.no_verify || !entry.fingerprint.empty();
    }

    /// With the options that it is known to be made with, or else with those of this run.
    void AddToProve(std::uint64_t number, TaskMode mode, const std::string& input, const std::string& dng,
                    const std::optional<LedgerEntry>& entry) {
        const bool known = entry && entry->options != UnknownOptions();
        AddTask(number, mode, input, dng, known ? entry->options : options_.conversion,
                entry ? entry->fingerprint : "");
        plan_.tasks.back().options_known = known;
    }

    void AddTask(std::uint64_t number, TaskMode mode, const std::string& input, const std::string& dng,
                 std::vector<std::string> options = {}, const std::string& fingerprint = "") {
        plan_.tasks.push_back({number, mode, input, dng, fingerprint, std::move(options)});
    }

    void AddToRefresh(std::uint64_t number, const std::string& input, const std::string& dng) {
        if (state_.refreshed().contains(dng)) {
            ++plan_.refreshed;
            AddTask(number, TaskMode::kProve, input, dng, options_.conversion);
        } else {
            ++plan_.to_make;
            AddTask(number, TaskMode::kConvert, input, dng);
        }
    }

    /// Its check sum, which nobody knows unless SHA256SUMS has it, needs a worker.
    void Keep(std::uint64_t number, const std::string& input, const std::string& dng,
              const LedgerEntry& entry) {
        const std::string sum = options_.checksums ? known_sums_.Of(dng).value_or("") : "";
        if (options_.checksums && sum.empty()) {
            AddToProve(number, TaskMode::kProve, input, dng, entry);
            return;
        }
        plan_.kept.push_back(number);
        plan_.flaws.push_back(entry.flaws);
        plan_.sums.push_back(sum);
        plan_.CountOptions(entry.options, options_.conversion);
    }

    void AddUnknown(std::uint64_t number, const std::string& input, const std::string& dng,
                    const std::optional<LedgerEntry>& entry) {
        const auto there = StateAt(dng);
        if (!there) {
            ++plan_.to_make;
            AddTask(number, TaskMode::kConvert, input, dng);
        } else if (entry || !options_.no_verify || MayBeOlder(*there, input) || MayBeHalfWritten(*there)) {
            AddToProve(number, TaskMode::kProve, input, dng, entry);
        } else {
            AddTask(number, TaskMode::kCheck, input, dng);
        }
    }

    /// Than the files that it was made of, which may have changed since.
    static bool MayBeOlder(const FileState& dng, const std::string& input) {
        const PictureFiles files(input);
        return std::ranges::any_of(
            std::array{input, files.Jpg(), files.DarkFrame()}, [&](const std::string& path) {
                const auto state = StateAt(path);
                return state && state->modified_seconds > LastChange(dng) + kCoarsestTick;
            });
    }

    /// The power may have been cut in the run that made it.
    bool MayBeHalfWritten(const FileState& dng) const {
        const auto since = state_.interrupted_since();
        return since && LastChange(dng) + kCoarsestTick >= *since;
    }

    const BatchOptions& options_;
    const RunState& state_;
    const Ledger& ledger_;
    bool refresh_ = false;
    FolderChecksums known_sums_;
    Plan plan_;
};

}  // namespace

void Plan::CountOptions(const std::vector<std::string>& made_with,
                        const std::vector<std::string>& asked_for) {
    if (made_with != UnknownOptions() && !conversion_options::MakeSameDng(made_with, asked_for) &&
        other_options++ == 0) {
        options_of_others = conversion_options::Line(conversion_options::ThatChangeTheDng(made_with));
    }
}

Plan MakePlan(const BatchOptions& options, std::span<const Tree> trees, std::span<const Picture> pictures,
              const RunState& state, const Ledger& ledger) {
    Planner planner(options, state, ledger);
    for (std::uint64_t number = 0; number < pictures.size(); ++number) {
        const Picture& picture = pictures[static_cast<std::size_t>(number)];
        planner.Add(number, InputOf(picture, trees), DngOf(picture, trees));
    }
    return std::move(planner.plan());
}
