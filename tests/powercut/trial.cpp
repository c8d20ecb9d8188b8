// SPDX-License-Identifier: MIT
#include "tests/powercut/trial.h"

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>
#include <utility>

#include "tests/powercut/must.h"
#include "tests/support/files.h"
#include "tests/support/program.h"

namespace powercut {

namespace fs = std::filesystem;

namespace {

/// Long enough for the kernel to write back all data; see `dirty_expire_centisecs`.
constexpr auto kUntilAllIsWritten = std::chrono::seconds(3);

/// The files in a folder, for messages.
std::string Listing(const std::string& folder) {
    std::string text;
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        std::error_code no_size;
        const auto size = entry->file_size(no_size);
        text += " " + entry->path().filename().string() + "(" + (no_size ? "?" : std::to_string(size)) + ")";
    }
    return error ? text + " " + error.message() : text;
}

}  // namespace

Trial::Trial(const FileSystem& file_system, Scenario scenario, std::string program)
    : file_system_(file_system),
      scenario_(std::move(scenario)),
      program_(std::move(program)),
      disk_(file_system.size) {
    Prepare();
    Record();
}

/// Makes the file system and the files that exist before the runs.
void Trial::Prepare() const {
    const auto bytes = disk_.Before();
    BlockDevice device(bytes->bytes());
    Must(RunOnDevice(file_system_.make) == 0, file_system_.make.front());
    const Mount mount(file_system_);
    Must(mount.mounted(), "mount");
    for (const std::string folder : {"card", "out", "bin"}) {
        fs::create_directory(kDisk + folder);
    }
    for (const auto* files : {&scenario_.inputs, &scenario_.replaced}) {
        for (const File& file : *files) {
            support::WriteFile(kDisk + file.path, file.bytes);
        }
    }
    ::sync();
}

/// Runs the program and records the requests to the disk until all data are written back.
void Trial::Record() {
    const auto bytes = disk_.Copy();
    BlockDevice device(bytes->bytes());
    {
        const Mount mount(file_system_);
        Must(mount.mounted(), "mount");
        start_ = device.Requests();
        const std::string output = RunAll(scenario_.runs);
        for (const File& file : scenario_.replaced) {
            Bytes& result = results_[file.path];
            Must(Read(kDisk + file.path, result) && result != file.bytes,
                 std::string(file.path).append(" not replaced:\n").append(output));
        }
        for (const std::string& file : scenario_.made) {
            Must(Read(kDisk + file, results_[file]), std::string(file).append(" not made:\n").append(output));
        }
        std::this_thread::sleep_for(kUntilAllIsWritten);
    }
    log_ = device.Log();
}

/// Returns what the program printed.
std::string Trial::RunAll(const std::vector<std::vector<std::string>>& runs) const {
    std::string output;
    for (const auto& arguments : runs) {
        // With this name the program looks for its databases on the disk.
        const auto outcome =
            support::RunProgram(program_, arguments, {.folder = kDisk, .name = kDisk + "bin/velmarcon"});
        output += outcome.output;
    }
    return output;
}

void Trial::Cut(const CrashPoint& point, bool checked, Tally& tally) const {
    const std::size_t before = tally.violations.size();
    Tally seen = tally;
    LookAfter(point, checked, seen);
    if (seen.violations.size() > before && !checked && !file_system_.check.empty()) {
        Tally after_check = tally;
        LookAfter(point, true, after_check);
        if (after_check.violations.size() == before) {
            seen = after_check;
            ++seen.needed_check;
        }
    }
    tally = seen;
    ++tally.points;
    tally.bad_points += tally.violations.size() > before ? 1U : 0U;
}

void Trial::LookAfter(const CrashPoint& point, bool checked, Tally& tally) const {
    const std::string where = point.Description() + (checked ? ", checked" : "");
    const auto bytes = disk_.Copy();
    point.Apply(log_, bytes->bytes());
    BlockDevice device(bytes->bytes());
    if (checked) {
        RunOnDevice(file_system_.check);
    }
    const std::size_t before = tally.violations.size();
    Look(where, tally);
    if (tally.violations.size() == before && scenario_.is_quick) {
        GoOn(where, tally);
    }
}

void Trial::Look(const std::string& where, Tally& tally) const {
    const Mount mount(file_system_);
    if (mount.mounted()) {
        Judge(where, tally);
    } else {
        tally.violations.push_back(where + ": cannot be mounted");
    }
}

/// A further run must not damage what the power cut left, such as a file that has two names. Mounts the disk
/// again before checking, because only then are the results read from it.
void Trial::GoOn(const std::string& where, Tally& tally) const {
    std::string output;
    if (const Mount mount(file_system_); mount.mounted()) {
        output = RunAll(scenario_.again);
    }
    const Mount mount(file_system_);
    for (const File& file : scenario_.replaced) {
        const State state = StateOf(kDisk + file.path, &file.bytes, results_.at(file.path));
        ++tally.after_further_run[state];
        if (state != State::kOld && state != State::kNew) {
            std::string violation = where;
            violation.append(": ").append(file.path).append(" is lost after a further run (");
            violation.append(Name(state)).append("):\n").append(output);
            violation.append(Listing(fs::path(kDisk + file.path).parent_path()));
            tally.violations.push_back(violation);
        }
    }
}

void Trial::Judge(const std::string& where, Tally& tally) const {
    for (const File& file : scenario_.inputs) {
        if (StateOf(kDisk + file.path, nullptr, file.bytes) != State::kNew) {
            tally.violations.push_back(where + ": " + file.path + " changed;" + Listing(kDisk + "card"));
        }
    }
    for (const std::string& file : scenario_.made) {
        ++tally.made[StateOf(kDisk + file, nullptr, results_.at(file))];
    }
    for (const File& file : scenario_.replaced) {
        JudgeReplaced(file, where, tally);
    }
}

/// Either the old or the new bytes must be there, or a further run must put the old ones back.
void Trial::JudgeReplaced(const File& file, const std::string& where, Tally& tally) const {
    const std::string path = kDisk + file.path;
    const Bytes& made = results_.at(file.path);
    State state = StateOf(path, &file.bytes, made);
    const auto safe = [&] { return state == State::kOld || state == State::kNew; };
    std::string note;
    if (!safe() && StateOf(path + ".old", &file.bytes, made) == State::kOld) {
        note = " even after a further run:\n" + RunAll(scenario_.again);
        state = StateOf(path, &file.bytes, made);
        tally.put_back += safe() ? 1U : 0U;
    }
    ++tally.replaced[state];
    if (!safe()) {
        tally.violations.push_back(where + ": " + file.path + " is lost (" + Name(state) + ")" + note + ";" +
                                   Listing(fs::path(path).parent_path()));
    }
}

}  // namespace powercut
