// SPDX-License-Identifier: MIT
#include "batch/plan.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

#include "batch/conversion_options.h"
#include "batch/file_facts.h"
#include "batch/numbered_name.h"
#include "batch/proof/checksums.h"
#include "batch/records.h"
#include "system/file_state.h"
#include "system/file_system.h"
#include "system/folder_tools.h"
#include "system/part_files.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kCoarsestTick = 2;  ///< seconds

std::int64_t LastChange(const FileState& state) {
    return std::max(state.modified_seconds, state.changed_seconds);
}

/// Whether the DNG and the files that it was made of are as they were then.
bool IsUntouched(const LedgerEntry& entry, const std::string& dng) {
    const std::string base = WithoutExtension(entry.source);
    const bool is_pair = entry.source.ends_with(".RAW");
    return FullStateText(dng) == entry.dng_state && SameState(entry.raw_state, StateText(entry.source)) &&
           (!is_pair || (SameState(entry.jpg_state, StateText(base + ".JPG")) &&
                         SameState(entry.bia_state, StateText(base + ".BIA"))));
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
        const std::string sum = options_.checksums ? KnownSum(dng) : "";
        if (options_.checksums && sum.empty()) {
            AddToProve(number, TaskMode::kProve, input, dng, entry);
            return;
        }
        plan_.kept.push_back(number);
        plan_.flaws.push_back(entry.flaws);
        plan_.sums.push_back(sum);
        plan_.CountOptions(entry.options, options_.conversion);
    }

    std::string KnownSum(const std::string& dng) {
        const std::string folder = FolderIn(dng);
        if (folder != sums_folder_) {
            sums_.clear();
            sums_folder_ = folder;
            (void)ReadChecksums(folder, sums_);
        }
        const auto found = sums_.find(NameIn(dng));
        return found != sums_.end() ? found->second : "";
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
        const std::string base = WithoutExtension(input);
        return std::ranges::any_of(
            std::array{input, base + ".JPG", base + ".BIA"}, [&](const std::string& path) {
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
    std::string sums_folder_;  ///< from which the check sums are
    Checksums sums_;
    Plan plan_;
};

/// A name without what a file system may ignore: case, and all that is not ASCII.
std::string Folded(const std::string& name) {
    std::string folded;
    for (const char c : name) {
        const bool is_ascii = static_cast<unsigned char>(c) < 0x80;
        const bool is_capital = c >= 'A' && c <= 'Z';
        if (is_ascii) {
            folded += is_capital ? static_cast<char>(c - 'A' + 'a') : c;
        } else if (!folded.ends_with('\x7F')) {
            folded += '\x7F';
        }
    }
    return folded;
}

std::vector<std::string> NamesOf(const std::string& path) {
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find('/', begin), path.size());
        names.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return names;
}

/// The nearest folder above `path` that is there.
std::string ExistingFolder(std::string path) {
    std::error_code unknown;
    while (path.size() > 1 && !fs::is_directory(system_path::ToSystem(path), unknown)) {
        path = path.substr(0, path.find_last_of('/', path.size() - 2) + 1);
    }
    return path;
}

/// Whether both names are one to the file system of `folder`: it is asked, with a folder that is removed
/// again.
bool AreOneName(const std::string& folder, const std::string& a, const std::string& b) {
    std::error_code error;
    const std::string place = ExistingFolder(folder) + "/" + part_files::NewName();
    fs::create_directory(system_path::ToSystem(place), error);
    fs::create_directory(system_path::ToSystem(place + "/" + a), error);
    const bool one = !error && file_system::IsTaken(place + "/" + b);
    fs::remove_all(system_path::ToSystem(place), error);
    return one;
}

/// Whether two different paths lead to one file.
bool AreOnePath(const std::string& out, const std::string& a, const std::string& b) {
    const std::vector<std::string> names_a = NamesOf(a);
    const std::vector<std::string> names_b = NamesOf(b);
    if (names_a.size() != names_b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < names_a.size(); ++i) {
        if (names_a[i] != names_b[i] && !AreOneName(out, names_a[i], names_b[i])) {
            return false;
        }
    }
    return true;
}

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

std::string ProblemOfNames(std::span<const Tree> trees, std::span<const Picture> pictures) {
    std::map<std::pair<std::uint32_t, std::string>, const Picture*> seen;
    for (const Picture& picture : pictures) {
        const std::string base = WithoutExtension(picture.name);
        const auto [other, is_new] = seen.try_emplace({picture.tree, Folded(base)}, &picture);
        const std::string other_base = WithoutExtension(other->second->name);
        if (!is_new && other_base != base && AreOnePath(trees[picture.tree].out, other_base, base)) {
            return InputOf(*other->second, trees) + " and " + InputOf(picture, trees);
        }
    }
    return "";
}

Space SpaceFor(std::span<const Task> tasks, bool preview) {
    constexpr std::uint64_t dng_bytes = 21'020'000;
    constexpr std::uint64_t preview_bytes = 231'000;
    std::map<std::uint64_t, std::pair<std::uint64_t, std::string>>
        needed;  // bytes and a folder, by file system
    Space space;
    std::string folder;
    std::uint64_t device = 0;
    for (const Task& task : tasks) {
        if (task.mode != TaskMode::kConvert || file_system::IsTaken(task.dng)) {
            continue;
        }
        if (const std::string own = FolderIn(task.dng); own != folder) {
            folder = own;
            const auto state = StateAt(ExistingFolder(folder));
            device = state ? state->device : 0;
        }
        auto& volume = needed[device];
        volume.first += dng_bytes + (preview ? preview_bytes : 0);
        volume.second = folder;
    }
    bool first = true;
    for (const auto& [number, volume] : needed) {
        std::uint64_t free = 0;
        space.needed += volume.first;
        if (!folder_tools::FreeBytes(ExistingFolder(volume.second), free)) {
            space.enough = space.enough && volume.first <= free;
            space.free = first ? free : std::min(space.free, free);
            first = false;
        }
    }
    return space;
}
