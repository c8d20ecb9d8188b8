// SPDX-License-Identifier: MIT
#include "batch/hosts.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "batch/copy_time.h"
#include "batch/engine.h"
#include "batch/fields.h"
#include "batch/fingerprint.h"
#include "batch/host_job.h"
#include "batch/picture.h"
#include "batch/shown.h"
#include "batch/worker.h"
#include "errors/version.h"
#include "system/file_system.h"
#include "system/replacement_file.h"
#include "system/running_process.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

/// Where a host keeps what it works on, below the home folder there: a folder for each state, and in it one
/// for each run. What an interrupted run still has on its way then, such as the removal of a picture there,
/// meets no other run's.
constexpr const char* kHostFolder = ".cache/velmarcon-batch";

/// The answer is "ready" and the number of cores, or what is missing. By whatever shell there is.
constexpr const char* kQuestion =
    "sh -c '"
    "for program in rsync velmarcon-batch; do "
    "command -v \"$program\" >/dev/null || { echo \"no $program there\"; exit; }; "
    "done; "
    "version=$(velmarcon-batch --version </dev/null 2>&1) || version=\"another program\"; "
    "[ \"$version\" = \"velmarcon-batch $1\" ] || { echo \"velmarcon-batch there is $version, not $1\"; "
    "exit; }; "
    "rm -rf -- \"$HOME/$2\"; "
    "echo \"ready $(getconf _NPROCESSORS_ONLN)\"' question ";

/// What a job runs there, and on this machine: here the environment names the program.
std::string JobCommand() {
    return std::string("sh -c 'exec \"${") + worker_environment::kProgram + ":-velmarcon-batch}\" " +
           kWorkerArgument + " \"$1\"' worker {}";
}

/// A login goes into a command line: it is what ssh takes for one, and nothing else.
bool IsLogin(const std::string& login) {
    return !login.empty() && !login.starts_with('-') && std::ranges::all_of(login, [](unsigned char c) {
        return std::isalnum(c) != 0 ||
               std::string("@._-:[]%").find(static_cast<char>(c)) != std::string::npos;
    });
}

std::vector<std::string> SplitList(const std::string& list) {
    std::vector<std::string> entries;
    for (std::size_t begin = 0; begin <= list.size();) {
        const std::size_t end = std::min(list.find(',', begin), list.size());
        if (end > begin) {
            entries.push_back(list.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return entries;
}

std::string LastLine(std::string text) {
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    return text.substr(text.rfind('\n') + 1);
}

bool Copy(const std::string& from, const std::string& to) {
    const auto bytes = fields::ReadWhole(from);
    return bytes && !fields::WritePlain(to, *bytes);
}

}  // namespace

std::string Hosts::OnHost(const std::string& login, const std::string& command) const {
    ChildStart start;
    start.arguments = {parallel_, "--plain", "--will-cite", "--nonall", "--sshlogin", login, command};
    start.environment = {{"PARALLEL_HOME", state_.PathOf("../.parallel")}};
    start.unset = {"PARALLEL"};
    std::string printed;
    (void)RunForOutput(start, printed);
    return printed;
}

std::string Hosts::Ask(const std::string& list, bool& is_usage) {
    is_usage = false;
    const std::string id =
        fields::ReadWhole(state_.PathOf("id")).value_or(std::to_string(running_process::RandomNumber()));
    if (fields::WritePlain(state_.PathOf("id"), id)) {
        return "nothing can be written to " + state_.folder();
    }
    id_folder_ = std::string(kHostFolder) + "/" + id;
    work_folder_ = id_folder_ + "/" + std::to_string(running_process::RandomNumber());
    for (const std::string& entry : SplitList(list)) {
        const std::string login = entry.substr(entry.find('/') + 1);
        const bool has_number = entry.find('/') != std::string::npos;
        if (!IsLogin(login) || (has_number && !fields::Number(entry.substr(0, entry.find('/'))))) {
            is_usage = true;
            return "--hosts: " + entry + " is not a host";
        }
        if (std::string problem = AskOne(entry); !problem.empty()) {
            return problem;
        }
    }
    is_usage = entries_.empty();
    return is_usage ? "--hosts names no host" : "";
}

/// A host that cannot do the work would fail one picture after the other, faster than those that can convert
/// them.
std::string Hosts::AskOne(const std::string& entry) {
    constexpr const char* ready = "ready ";
    const auto slash = entry.find('/');
    const std::string login = slash == std::string::npos ? entry : entry.substr(slash + 1);
    std::string number = slash == std::string::npos ? "" : entry.substr(0, slash);
    if (login != ":") {
        if (FindOnSearchPath("rsync").empty() || FindOnSearchPath("ssh").empty()) {
            return "--hosts needs rsync and ssh (Debian: openssh-client)";
        }
        const std::string answer =
            LastLine(OnHost(login, kQuestion + std::string(kVersion) + " " + id_folder_));
        if (!answer.starts_with(ready)) {
            return "host " + login + ": " + answer;
        }
        number = number.empty() ? answer.substr(std::string(ready).size()) : number;
        logins_.push_back(login);
    }
    slots_ += static_cast<std::size_t>(fields::Number(number).value_or(1));
    entries_.push_back(number.empty() ? login : number + "/" + login);
    return "";
}

bool Hosts::Link(const std::string& target, const std::string& name) const {
    std::error_code error;
    fs::create_symlink(target, name, error);
    return !error;
}

/// The databases are those that are used here; what is missing here is missing there.
bool Hosts::HandOver(const WorkerSettings& settings) {
    const std::string handed = state_.PathOf("handed") + "/";
    std::error_code error;
    fs::remove_all(handed, error);
    fs::create_directories(handed + host_job::kData, error);
    given_ = {host_job::kSettings};
    for (const char* const name : {"lensdb.ini", "sensdb.ini"}) {
        const std::string file = std::string(host_job::kData) + "/" + name;
        if (file_system::IsTaken(settings.databases + name) &&
            Copy(settings.databases + name, handed + file)) {
            given_.push_back(file);
        }
    }
    return !jobs::WriteSettings(handed + host_job::kSettings, settings);
}

bool Hosts::LayOutJob(std::uint64_t job, std::span<const Task> tasks) {
    const std::string folder = state_.PathOf(host_job::kSent) + "/" + std::to_string(job) + "/";
    std::error_code error;
    fs::create_directories(folder, error);
    std::vector<Task> sent;
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        const Task& task = tasks[i];
        const std::string base = WithoutExtension(task.input);
        sent.push_back({task.picture, TaskMode::kConvert, NameIn(task.input), "", "", {}});
        SentPicture& picture = sent_[task.picture];
        picture = {job, StateText(task.input), "", ""};
        if (!Link(task.input, folder + host_job::FileOf(i, "RAW"))) {
            return false;
        }
        if (!task.input.ends_with(".RAW")) {
            continue;
        }
        picture.jpg_state = StateText(base + ".JPG");
        picture.bia_state = StateText(base + ".BIA");
        for (const auto& [extension, state] :
             {std::pair("JPG", picture.jpg_state), std::pair("BIA", picture.bia_state)}) {
            if (!state.empty() && !Link(base + "." + extension, folder + host_job::FileOf(i, extension))) {
                return false;
            }
        }
    }
    remaining_[job] = tasks.size();
    return !jobs::Write(folder + host_job::kJob, sent) &&
           !jobs::Write(jobs::FileOf(state_.folder(), job), {tasks.begin(), tasks.end()});
}

std::uint64_t Hosts::LayOut(const WorkerSettings& settings, std::span<const Task> tasks,
                            std::uint64_t first) {
    constexpr std::size_t most = 8;
    constexpr std::size_t jobs_a_slot = 4;
    const std::size_t per_job =
        std::clamp<std::size_t>(tasks.size() / (std::max<std::size_t>(slots_, 1) * jobs_a_slot), 1, most);
    std::error_code error;
    fs::remove_all(state_.PathOf(host_job::kSent), error);
    fs::remove_all(state_.PathOf(host_job::kBack), error);
    fs::create_directory(state_.PathOf(host_job::kBack), error);
    if (!HandOver(settings)) {
        return 0;
    }
    first_ = first;
    last_ = first - 1;
    for (std::size_t at = 0; at < tasks.size(); at += per_job) {
        if (!LayOutJob(++last_, tasks.subspan(at, std::min(per_job, tasks.size() - at)))) {
            return 0;
        }
    }
    return last_;
}

/// -L sends what a link leads to.
ChildStart Hosts::Start() const {
    ChildStart start = ParallelStart(parallel_, state_);
    std::string numbers;
    for (std::uint64_t job = first_; job <= last_; ++job) {
        numbers += std::to_string(job) + "\n";
    }
    (void)fields::WritePlain(state_.PathOf("numbers"), numbers);
    auto& arguments = start.arguments;
    arguments.insert(arguments.end(), {"-a", "numbers", "--retries", "3", "--workdir", work_folder_,
                                       "--cleanup", "--transferfile", std::string(host_job::kSent) + "/{}",
                                       "--return", std::string(host_job::kBack) + "/{}"});
    for (const std::string& entry : entries_) {
        arguments.insert(arguments.end(), {"--sshlogin", entry});
    }
    for (const std::string& file : given_) {
        arguments.insert(arguments.end(), {"--basefile", "handed/./" + file});
    }
    arguments.push_back(JobCommand());
    start.output = state_.PathOf("records/hosts");
    start.environment.emplace_back("PARALLEL_RSYNC_OPTS", "-rLDRIW --ignore-missing-args");
    start.environment.emplace_back("RSYNC_OLD_ARGS", "1");
    AddWorkerEnvironment(program_, state_, start);
    return start;
}

/// Returns why the DNG is not here, or an empty text.
std::string Hosts::TakeDng(const Task& task, bool refresh, const Record& record) const {
    constexpr const char* lost = "the DNG was made, but did not come back from the host";
    const auto blank = record.dng.find(' ');
    constexpr std::uint64_t longest = 100'000'000;
    const std::uint64_t begin = fields::Number(record.dng.substr(0, blank)).value_or(longest * longest);
    const std::uint64_t length =
        fields::Number(blank == std::string::npos ? "" : record.dng.substr(blank + 1)).value_or(0);
    const auto picture = sent_.find(record.picture);
    if (length == 0 || length > longest || begin >= longest * longest || picture == sent_.end()) {
        return lost;
    }
    std::ifstream archive(state_.PathOf(host_job::kBack) + "/" + std::to_string(picture->second.job),
                          std::ios::binary);
    std::vector<char> bytes(static_cast<std::size_t>(length));
    archive.seekg(static_cast<std::streamoff>(begin));
    archive.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const std::span<const std::uint8_t> view(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                             bytes.size());
    Fingerprint fingerprint;
    fingerprint.Add(view);
    if (!archive || fingerprint.Hex() != record.fingerprint) {
        return lost;
    }
    std::error_code error;
    fs::create_directories(system_path::ToSystem(FolderIn(task.dng)), error);
    ReplacementFile file;
    using Existing = ReplacementFile::Existing;
    std::error_code failed = file.Open(task.dng, refresh ? Existing::kReplace : Existing::kKeep);
    if (!failed) {
        file.Write(bytes);
        failed = file.Commit(bytes.size());
    }
    return failed ? task.dng + ": DNG not written: " + ErrorText(failed) : "";
}

void Hosts::CountDown(std::uint64_t job) {
    if (std::size_t& left = remaining_[job]; left > 0 && --left == 0) {
        file_system::Remove(state_.PathOf(host_job::kBack) + "/" + std::to_string(job));
    }
}

void Hosts::TakeOver(const Task& task, bool refresh, bool keep_time, Record& record) {
    const auto sent = sent_.find(record.picture);
    const bool is_from_host = !record.dng.starts_with(task.dng.substr(0, 1));
    if (record.verdict == Verdict::kConverted && is_from_host) {
        const std::string problem = TakeDng(task, refresh, record);
        if (!problem.empty()) {
            record.Fail(problem, "did not come back from the host");
        }
    }
    if (sent == sent_.end() || !is_from_host) {
        return;
    }
    record.dng = task.dng;
    record.raw_state = sent->second.raw_state;
    record.jpg_state = sent->second.jpg_state;
    record.bia_state = sent->second.bia_state;
    if (keep_time && record.verdict == Verdict::kConverted) {
        CopyTime(task.input, task.dng);
    }
    record.dng_state = FullStateText(task.dng);
    CountDown(sent->second.job);
}

void Hosts::CleanUp() const {
    for (const std::string& login : logins_) {
        (void)OnHost(login, "rm -rf " + id_folder_ + "; rmdir " + kHostFolder);
    }
    std::error_code error;
    for (const char* const name : {host_job::kSent, host_job::kBack}) {
        fs::remove_all(state_.PathOf(name), error);
    }
}
