// SPDX-License-Identifier: MIT
#include "batch/run_state.h"

#include <ctime>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <utility>

#include "batch/fields.h"
#include "batch/jobs.h"
#include "batch/old_states.h"
#include "batch/picture.h"
#include "batch/records.h"
#include "batch/shown.h"
#include "batch/state_place.h"
#include "system/file_system.h"
#include "system/folder_listing.h"
#include "system/folder_tools.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

std::string OutputsText(const std::vector<Tree>& trees) {
    std::string text;
    for (const Tree& tree : trees) {
        text += tree.out + '\0';
    }
    return text;
}

/// What makes this the same command as another.
std::string CommandText(const BatchOptions& options, const std::vector<Tree>& trees) {
    std::vector<std::string> texts;
    for (const Tree& tree : trees) {
        texts.push_back(tree.root);
        texts.push_back(tree.out);
        texts.insert(texts.end(), tree.only.begin(), tree.only.end());
    }
    texts.emplace_back("--");
    texts.insert(texts.end(), options.conversion.begin(), options.conversion.end());
    return fields::Joined(texts);
}

bool RemoveAll(const std::string& path) {
    std::error_code error;
    fs::remove_all(system_path::ToSystem(path), error);
    return !error;
}

bool MakeFolder(const std::string& path) {
    std::error_code error;
    fs::create_directory(system_path::ToSystem(path), error);
    return !error;
}

}  // namespace

std::string RunState::Open(const BatchOptions& options, const std::vector<Tree>& trees) {
    constexpr const char* not_made =
        "the folder of the job log cannot be made; name another one with --state";
    std::error_code error;
    const std::string parent = options.state.empty() ? state_place::UsualParent() : options.state;
    parent_ = system_path::FromSystem(fs::absolute(system_path::ToSystem(parent), error));
    const std::string folder = parent_ + "/" + state_place::KeyOf(OutputsText(trees));
    if (!options.state.empty()) {
        fs::create_directories(system_path::ToSystem(parent_),
                               error);  // a place of the user's choice stays as open as it is
    } else if (const std::error_code failed = folder_tools::MakePrivate(parent_)) {
        return std::string(not_made) + " (" + Shown(parent_) + ": " + ErrorText(failed) + ")";
    }
    if (const std::error_code failed = folder_tools::MakePrivate(folder)) {
        return std::string(not_made) + " (" + Shown(folder) + ": " + ErrorText(failed) + ")";
    }
    folder_ = CanonicalFolder(folder);
    if (folder_.empty()) {
        return Shown(folder) + " cannot be entered";
    }
    RemoveOldStates(parent_, NameIn(folder_));
    return locks_.Take(folder_, trees);
}

std::string RunState::Begin(const BatchOptions& options, const std::vector<Tree>& trees) {
    const std::string nothing = "nothing can be written to " + Shown(folder_);
    if (const std::error_code error = ledger_.Open(PathOf("ledger"))) {
        return nothing + ": " + ErrorText(error);
    }
    const std::string command = CommandText(options, trees);
    keeps_interrupted_ = options.verify;
    TakeInterrupted(keeps_interrupted_ ||
                    (fields::ReadWhole(PathOf("command")) == command && !options.fresh));
    return KeepRefreshed() && Clear() && (keeps_interrupted_ || NoteBegin(command, options.conversion))
               ? ""
               : nothing;
}

/// Takes over what an interrupted run has left, if there was one. With `goes_on`, this run does the rest of
/// what that one was asked for.
void RunState::TakeInterrupted(bool goes_on) {
    const std::vector<std::string> begun = fields::Split(fields::ReadWhole(PathOf("begun")).value_or(""));
    if (begun.empty()) {
        return;
    }
    interrupted_since_ = static_cast<std::int64_t>(fields::Number(begun.front()).value_or(0));
    if (goes_on) {
        for (std::string& dng : fields::Split(fields::ReadWhole(PathOf("refreshed")).value_or(""))) {
            refreshed_.insert(std::move(dng));
        }
    }
    TakeRecords({begun.begin() + 1, begun.end()}, goes_on);
}

/// Removes the jobs and records of earlier runs. Returns whether that and new ones are possible.
bool RunState::Clear() const {
    std::error_code error;
    fs::rename(system_path::ToSystem(PathOf("joblog")), system_path::ToSystem(PathOf("joblog.previous")),
               error);
    return RemoveAll(PathOf("records")) && RemoveAll(PathOf("jobs")) && MakeFolder(PathOf("records")) &&
           MakeFolder(PathOf("jobs")) && !fields::WritePlain(PathOf("messages"), "");
}

/// For the run after this one, if this one is interrupted.
bool RunState::NoteBegin(const std::string& command, const std::vector<std::string>& conversion) const {
    std::vector<std::string> now = conversion;
    now.insert(now.begin(), std::to_string(std::time(nullptr)));
    return !fields::WritePlain(PathOf("command"), command) &&
           !fields::WritePlain(PathOf("begun"), fields::Joined(now));
}

bool RunState::KeepRefreshed() const {
    if (refreshed_.empty()) {
        file_system::Remove(PathOf("refreshed"));
        return true;
    }
    const std::vector<std::string> dngs(refreshed_.begin(), refreshed_.end());
    return !fields::WritePlain(PathOf("refreshed"), fields::Joined(dngs));
}

/// What is not in the ledger yet; none of it is known to be on the disk.
void RunState::TakeRecords(const std::vector<std::string>& options, bool goes_on) {
    FolderListing records(PathOf("records"));
    if (!records.IsOpen()) {
        return;
    }
    while (const auto job = records.NextFile()) {
        TakeRecordsOf(*job, options, goes_on);
    }
}

void RunState::TakeRecordsOf(const std::string& job, const std::vector<std::string>& options, bool goes_on) {
    std::unordered_map<std::uint64_t, std::string> sources;
    for (const Task& task : jobs::Read(PathOf("jobs") + "/" + job).value_or(std::vector<Task>())) {
        sources[task.picture] = task.input;
    }
    std::size_t used = 0;
    for (const Record& record :
         RecordsIn(fields::ReadWhole(PathOf("records") + "/" + job).value_or(""), used)) {
        const auto source = sources.find(record.picture);
        if (record.verdict == Verdict::kConverted && source != sources.end()) {
            const auto known = ledger_.Find(record.dng);
            if (!known || known->dng_state != record.dng_state) {
                ledger_.Add(record.dng, EntryOf(record, source->second, options));
            }
            if (goes_on) {
                refreshed_.insert(record.dng);
            }
        }
    }
}

void RunState::End() {
    (void)ledger_.Compact();
    if (!keeps_interrupted_) {
        file_system::Remove(PathOf("begun"));
        file_system::Remove(PathOf("refreshed"));
    }
    RemoveAll(PathOf("records"));
    RemoveAll(PathOf("jobs"));
}
