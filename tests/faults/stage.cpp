// SPDX-License-Identifier: MIT
#include "tests/faults/stage.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <system_error>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace faults {

namespace fs = std::filesystem;

namespace {

/// The ending of the name of a file that was set aside.
constexpr const char* kAside = ".old";

constexpr std::array<const char*, 3> kFolders = {"card", "out", "bin"};

/// A folder in memory with enough room for tests that run in parallel.
fs::path RoomyFolder() {
    constexpr std::uint64_t enough = 512ULL << 20U;
    const char* const memory = "/dev/shm";
    struct statvfs room = {};
    const bool usable = ::statvfs(memory, &room) == 0 && ::access(memory, W_OK | X_OK) == 0 &&
                        std::uint64_t{room.f_bavail} * room.f_frsize >= enough;
    return usable ? fs::path(memory) : fs::temp_directory_path();
}

bool Holds(const std::string& path, const Bytes& bytes) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status = {};
    bool same = descriptor >= 0 && ::fstat(descriptor, &status) == 0 &&
                static_cast<std::size_t>(status.st_size) == bytes.size();
    if (same && !bytes.empty()) {
        void* const content = ::mmap(nullptr, bytes.size(), PROT_READ, MAP_SHARED, descriptor, 0);
        same = content != MAP_FAILED && std::memcmp(content, bytes.data(), bytes.size()) == 0;
        ::munmap(content, bytes.size());
    }
    ::close(descriptor);
    return same;
}

/// Whether it is still the same file and has never been written to. Does not read the content.
bool SameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec &&
           a.st_ctim.tv_sec == b.st_ctim.tv_sec && a.st_ctim.tv_nsec == b.st_ctim.tv_nsec;
}

bool IsPart(const std::string& file) {
    const std::string name = fs::path(file).filename();
    return name.starts_with(".velmarcon-") && name.ends_with(".part");
}

/// Whether a line reports that the picture or the file `target` failed, with the cause, or whether the whole
/// run ended with an error. The error of a dark frame comes without a name.
bool Reported(const support::Outcome& outcome, const std::string& target) {
    if (outcome.status != 0) {
        const std::string code = std::to_string(outcome.status);
        return outcome.output.find("Error #" + std::string(4 - code.size(), '0') + code + ": ") !=
               std::string::npos;
    }
    const std::string picture = "L1000001";
    const std::string file = fs::path(target).filename();
    std::istringstream lines(outcome.output);
    for (std::string line; std::getline(lines, line);) {
        const bool names_it = line.find(picture) != std::string::npos || line.find(file) != std::string::npos;
        const bool failed =
            line.find(": Error #") != std::string::npos || line.find(" not written: ") != std::string::npos;
        if ((names_it && failed) || line == "Error #0016: Damaged BIA file.") {
            return true;
        }
    }
    return false;
}

}  // namespace

Scratch::Scratch() {
    std::string name = (RoomyFolder() / "velmarcon-faults-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        std::abort();
    }
    path_ = fs::canonical(name);
}

Scratch::~Scratch() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

Stage::Stage(Scenario scenario) : scenario_(std::move(scenario)) {
    for (const char* folder : kFolders) {
        fs::create_directory(scratch_.path() / folder);
    }
    for (const auto* files : {&scenario_.inputs, &scenario_.old}) {
        for (const File& file : *files) {
            Place(file);
        }
    }
    for (const std::string& target : scenario_.targets) {
        results_[target] = {};
    }
    for (const File& file : scenario_.old) {
        results_[file.path].old = file.bytes;
    }
    LearnResults();
    for (const File& file : scenario_.inputs) {
        Place(file);
        ::stat(Path(file.path).c_str(), &inputs_[file.path]);
    }
    after_ = Files();
    for (const auto& [target, result] : results_) {
        fs::remove(Path(target));
    }
    Restore();
    before_ = Files();
}

void Stage::Place(const File& file) const {
    fs::remove(Path(file.path));
    support::WriteFile(Path(file.path), file.bytes);
}

Command Stage::Run(const std::vector<std::string>& more) const {
    Command command = {scenario_.arguments, Path("card"), Path("bin/velmarcon"), scratch_.path().string(),
                       scenario_.on_fat};
    command.arguments.insert(command.arguments.end(), more.begin(), more.end());
    return command;
}

/// Records the results of runs without faults: without the dispensable input, if there is one, and with all
/// inputs.
void Stage::LearnResults() {
    const auto learn = [&](auto keep) {
        const Command run = Run({"-r"});
        const auto outcome =
            support::RunProgram(VELMARCON_PROGRAM, run.arguments, {.folder = run.folder, .name = run.name});
        ASSERT_EQ(outcome.status, 0) << outcome.output;
        for (auto& [target, result] : results_) {
            keep(result, support::ReadFile(Path(target)));
        }
    };
    if (!scenario_.dispensable.empty()) {
        fs::remove(Path(scenario_.dispensable));
        learn([](Result& result, const Bytes& bytes) { result.less = bytes; });
        for (const File& file : scenario_.inputs) {
            Place(file);
        }
    }
    learn([](Result& result, const Bytes& bytes) { result.made = bytes; });
    for (const File& file : scenario_.old) {
        if (!IsReplaced(file.path)) {
            results_[file.path].made = file.bytes;
        }
    }
}

/// A DNG is only replaced with -r.
bool Stage::IsReplaced(const std::string& target) const {
    return !target.ends_with(".DNG") ||
           std::ranges::find(scenario_.arguments, "-r") != scenario_.arguments.end();
}

Stage::State Stage::StateOf(const std::string& target) const {
    const Result& result = results_.at(target);
    const std::string path = Path(target);
    if (!fs::exists(fs::symlink_status(path))) {
        const bool aside = scenario_.on_fat && result.old && Holds(path + kAside, *result.old);
        return result.old && !aside ? State::kBroken : State::kOld;
    }
    if (Holds(path, result.made)) {
        return State::kNew;
    }
    if (result.old && Holds(path, *result.old)) {
        return State::kOld;
    }
    return result.less && Holds(path, *result.less) ? State::kLess : State::kBroken;
}

std::set<std::string> Stage::Files() const {
    std::set<std::string> files;
    for (const char* folder : kFolders) {
        std::error_code missing;
        for (const auto& entry : fs::directory_iterator(scratch_.path() / folder, missing)) {
            files.insert(std::string(folder) + "/" + entry.path().filename().string());
        }
    }
    return files;
}

void Stage::Restore() {
    for (const File& file : scenario_.old) {
        if (!Holds(Path(file.path), file.bytes)) {
            Place(file);
        }
    }
    for (const auto& [target, result] : results_) {
        if (!result.old) {
            fs::remove(Path(target));
        }
    }
    for (const std::string& file : Files()) {
        if (IsPart(file) || file.ends_with(kAside)) {
            fs::remove(Path(file));
        }
    }
    for (const File& file : scenario_.debris) {
        Place(file);
    }
}

void Stage::RestoreInput(const std::string& path) {
    const auto input = std::ranges::find(scenario_.inputs, path, &File::path);
    ASSERT_NE(input, scenario_.inputs.end()) << path;
    Place(*input);
    ::stat(Path(path).c_str(), &inputs_[path]);
}

bool Stage::IsAside(const std::string& file) const {
    return std::ranges::any_of(results_, [&](const auto& result) { return file == result.first + kAside; });
}

bool Stage::Untouched() const {
    return Files() == before_ && std::ranges::all_of(results_, [&](const auto& result) {
               return StateOf(result.first) == State::kOld;
           });
}

bool Stage::Finished() const {
    std::set<std::string> files = Files();
    if (scenario_.on_fat) {  // a file that may belong to the user may stay aside
        std::erase_if(files, [&](const std::string& file) { return IsAside(file); });
    }
    return files == after_ && std::ranges::all_of(results_, [&](const auto& result) {
               return StateOf(result.first) == State::kNew;
           });
}

std::vector<std::string> Stage::JudgeTargets(const RunEnd& end) const {
    std::vector<std::string> wrong;
    for (const auto& [target, result] : results_) {
        const State state = StateOf(target);
        if (state == State::kBroken) {
            wrong.push_back(target + " is neither the old one nor a complete new one");
        }
        if (end.killed || end.silent) {
            continue;
        }
        const bool kept = results_.at(target).old && !IsReplaced(target);
        if (state == State::kOld && !kept && !Reported(end.outcome, target)) {
            wrong.push_back(target + " was not written, and no message says why:\n" + end.outcome.output);
        }
        if (state == State::kLess && end.outcome.output.find(scenario_.message) == std::string::npos) {
            wrong.push_back(target + " is incomplete, and no message says why:\n" + end.outcome.output);
        }
    }
    return wrong;
}

/// Whether the old file `aside` is the only copy, or the run could not tell whether the new file is safe.
bool Stage::IsNeeded(const std::string& aside, const RunEnd& end) const {
    const std::string target = aside.substr(0, aside.rfind(kAside));
    const bool in_doubt = StateOf(target) == State::kNew && Reported(end.outcome, target);
    return !fs::exists(Path(target)) || (in_doubt && Holds(Path(aside), *results_.at(target).old));
}

std::vector<std::string> Stage::JudgeFiles(const RunEnd& end) const {
    std::vector<std::string> wrong;
    for (const auto& [path, before] : inputs_) {
        struct stat now = {};
        if (::stat(Path(path).c_str(), &now) != 0 || !SameFile(before, now)) {
            wrong.push_back(path + " was changed");
        }
    }
    for (const std::string& file : Files()) {
        const bool part_may_be_left = end.killed || end.may_leave_part;
        const bool expected = before_.contains(file) || after_.contains(file) || results_.contains(file);
        const bool is_aside = scenario_.on_fat && IsAside(file);
        if (!expected && !(is_aside && IsNeeded(file, end)) &&
            !((IsPart(file) || is_aside) && part_may_be_left)) {
            wrong.push_back(file + " was left");
        }
    }
    return wrong;
}

std::vector<std::string> Stage::Judge(const RunEnd& end) const {
    constexpr std::array known = {0, 1, 2, 4, 5, 12, 15, 19};
    std::vector<std::string> wrong = JudgeTargets(end);
    const auto files = JudgeFiles(end);
    wrong.insert(wrong.end(), files.begin(), files.end());
    if (!end.killed && std::ranges::find(known, end.outcome.status) == known.end()) {
        wrong.push_back("exit status " + std::to_string(end.outcome.status) + "\n" + end.outcome.errors);
    }
    return wrong;
}

std::vector<std::string> Stage::Violations(const RunEnd& end) {
    std::vector<std::string> wrong = Judge(end);
    if (wrong.empty() && !end.obstacle_lasts && !Untouched() && !Finished()) {
        const bool refresh = std::ranges::all_of(
            results_, [&](const auto& result) { return !result.second.old || IsReplaced(result.first); });
        const Command again = Run(refresh ? std::vector<std::string>{"-r"} : std::vector<std::string>());
        const auto outcome = again.on_fat ? RunCleanly(again).outcome
                                          : support::RunProgram(VELMARCON_PROGRAM, again.arguments,
                                                                {.folder = again.folder, .name = again.name});
        if (!Finished()) {
            wrong.push_back("a later run does not complete the work:\n" + outcome.output);
        }
    }
    return wrong;
}

}  // namespace faults
