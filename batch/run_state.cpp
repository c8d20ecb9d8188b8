// SPDX-License-Identifier: MIT
#include "batch/run_state.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <map>
#include <system_error>
#include <thread>
#include <unordered_map>

#include "batch/fields.h"
#include "batch/jobs.h"
#include "batch/old_states.h"
#include "batch/picture.h"
#include "batch/records.h"
#include "batch/shown.h"
#include "system/file_system.h"
#include "system/folder_listing.h"
#include "system/folder_tools.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kAtWork = "another velmarcon-batch is at work on this output";

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): there is one thread
    return value != nullptr ? value : "";
}

/// Where states are kept unless the user names another place.
std::string UsualParent() {
    const std::string state_home = Variable("XDG_STATE_HOME");
#if defined(_WIN32)
    const std::string base = state_home.empty() ? Variable("LOCALAPPDATA") : state_home;
#else
    const std::string base = state_home.empty() ? Variable("HOME") + "/.local/state" : state_home;
#endif
    return base + "/velmarcon-batch";
}

/// A short name for a text of any bytes (FNV-1a).
std::string KeyOf(const std::string& text) {
    constexpr std::uint64_t basis = 0xCBF29CE484222325;
    constexpr std::uint64_t prime = 0x100000001B3;
    std::uint64_t key = basis;
    for (const char c : text) {
        key = (key ^ static_cast<unsigned char>(c)) * prime;
    }
    std::array<char, 17> digits = {};
    (void)std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(key));
    return digits.data();
}

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

/// Waits a moment for a run that was killed, and whose workers are about to notice; says so.
std::error_code TakeLock(FileLock& lock, const std::string& path, FileLock::Hold hold) {
    constexpr int patience = 50;
    constexpr auto step = std::chrono::milliseconds(100);
    std::error_code error = lock.Take(path, hold);
    if (error == std::errc::operation_would_block) {
        (void)std::fflush(stdout);
        (void)std::fprintf(stderr, "velmarcon-batch: %s; waiting a few seconds for its end\n", kAtWork);
    }
    for (int i = 0; i < patience && error == std::errc::operation_would_block; ++i) {
        std::this_thread::sleep_for(step);
        error = lock.Take(path, hold);
    }
    return error;
}

/// What is locked for a folder: the folder itself or, on Windows, where nobody else could list it then, a
/// file that stands for it; empty when neither can be.
std::string LockedFor(const std::string& folder) {
#if defined(_WIN32)
    const std::string locks = UsualParent() + "/.locks";
    return folder_tools::MakePrivate(locks) ? "" : locks + "/" + KeyOf(folder);
#else
    std::error_code unknown;
    return fs::is_directory(system_path::ToSystem(folder), unknown) ? folder : "";
#endif
}

/// All folders that a run locks. It shares those above its outputs with runs into other outputs in them.
std::map<std::string, FileLock::Hold> LockedFolders(const std::vector<Tree>& trees) {
    std::map<std::string, FileLock::Hold> folders;
    for (const Tree& tree : trees) {
        folders[tree.out] = FileLock::Hold::kAlone;
        for (std::size_t end = tree.out.rfind('/'); end != std::string::npos && end > 0;
             end = tree.out.rfind('/', end - 1)) {
            folders.try_emplace(tree.out.substr(0, end), FileLock::Hold::kTogether);
        }
    }
    return folders;
}

}  // namespace

std::string RunState::Open(const BatchOptions& options, const std::vector<Tree>& trees) {
    constexpr const char* not_made =
        "the folder of the job log cannot be made; name another one with --state";
    std::error_code error;
    const std::string parent = options.state.empty() ? UsualParent() : options.state;
    parent_ = system_path::FromSystem(fs::absolute(system_path::ToSystem(parent), error));
    const std::string folder = parent_ + "/" + KeyOf(OutputsText(trees));
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
    return LockOutputs(trees);
}

/// The state's lock, and those that keep runs with another state, and into folders that lie in each other,
/// apart. A folder that cannot be locked keeps nobody waiting.
std::string RunState::LockOutputs(const std::vector<Tree>& trees) {
    locks_.push_back(std::make_unique<FileLock>());
    if (const auto error = TakeLock(*locks_.back(), PathOf("lock"), FileLock::Hold::kAlone)) {
        return error == std::errc::operation_would_block
                   ? std::string(kAtWork) + "; wait for its end"
                   : "nothing can be written to " + Shown(folder_) + ": " + ErrorText(error);
    }
    for (const auto& [folder, hold] : LockedFolders(trees)) {
        const std::string locked = LockedFor(folder);
        if (locked.empty()) {
            continue;
        }
        locks_.push_back(std::make_unique<FileLock>());
        const std::error_code error = TakeLock(*locks_.back(), locked, hold);
        if (error == std::errc::operation_would_block) {
            return std::string(kAtWork) + ", or on one in it or around it (" + Shown(folder) +
                   "); wait for its end";
        }
        if (error) {
            locks_.pop_back();
        }
    }
    return "";
}

std::vector<int> RunState::LockDescriptors() const {
    std::vector<int> descriptors;
    for (const auto& lock : locks_) {
        descriptors.push_back(lock->Descriptor());
    }
    return descriptors;
}

std::string RunState::Begin(const BatchOptions& options, const std::vector<Tree>& trees) {
    std::string nothing = "nothing can be written to " + Shown(folder_);
    if (const std::error_code error = ledger_.Open(PathOf("ledger"))) {
        return nothing + ": " + ErrorText(error);
    }
    const std::string command = CommandText(options, trees);
    keeps_interrupted_ = options.verify;
    const bool goes_on =
        keeps_interrupted_ || (fields::ReadWhole(PathOf("command")) == command && !options.fresh);
    const std::vector<std::string> begun = fields::Split(fields::ReadWhole(PathOf("begun")).value_or(""));
    if (!begun.empty()) {
        interrupted_since_ = static_cast<std::int64_t>(fields::Number(begun.front()).value_or(0));
        if (goes_on) {
            for (std::string& dng : fields::Split(fields::ReadWhole(PathOf("refreshed")).value_or(""))) {
                refreshed_.insert(std::move(dng));
            }
        }
        TakeRecords({begun.begin() + 1, begun.end()}, goes_on);
    }
    std::error_code error;
    fs::rename(system_path::ToSystem(PathOf("joblog")), system_path::ToSystem(PathOf("joblog.previous")),
               error);
    if (!KeepRefreshed() || !RemoveAll(PathOf("records")) || !RemoveAll(PathOf("jobs")) ||
        !MakeFolder(PathOf("records")) || !MakeFolder(PathOf("jobs")) ||
        fields::WritePlain(PathOf("messages"), "")) {
        return nothing;
    }
    if (keeps_interrupted_) {
        return "";
    }
    if (fields::WritePlain(PathOf("command"), command)) {
        return nothing;
    }
    std::vector<std::string> now = options.conversion;
    now.insert(now.begin(), std::to_string(std::time(nullptr)));
    return fields::WritePlain(PathOf("begun"), fields::Joined(now)) ? nothing : "";
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
