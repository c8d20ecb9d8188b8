// SPDX-License-Identifier: MIT
#include "batch/worker.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "app/reach.h"
#include "batch/fields.h"
#include "batch/host_job.h"
#include "batch/jobs.h"
#include "batch/picture.h"
#include "batch/picture_files.h"
#include "batch/picture_work.h"
#include "batch/records.h"
#include "system/captured_output.h"
#include "system/file_system.h"
#include "system/running_process.h"
#include "system/sandbox.h"
#include "system/stop_request.h"
#include "system/system_path.h"

namespace {

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): there is one thread
    return value != nullptr ? value : "";
}

/// What a worker must be told and nobody else: it works for the front, which reads its records.
int Complain(const std::string& text) {
    (void)std::fprintf(stderr, "velmarcon-batch: %s\n", text.c_str());
    return 1;
}

struct JobRange {
    std::uint64_t first = 1;
    std::uint64_t last = 0;
};

std::optional<JobRange> RangeFrom(const std::string& name) {
    const auto dash = name.find('-');
    const auto first = fields::Number(name.substr(0, dash));
    const auto last = dash == std::string::npos ? first : fields::Number(name.substr(dash + 1));
    constexpr std::uint64_t most = 1'000'000;
    const bool is_range = first && last && *first <= *last && *last - *first < most;
    return is_range ? std::optional(JobRange{*first, *last}) : std::nullopt;
}

/// Adds what one picture needs to what all need.
void Add(const Reach& one, Reach& all) {
    all.read_folders.insert(all.read_folders.end(), one.read_folders.begin(), one.read_folders.end());
    all.written_folders.insert(all.written_folders.end(), one.written_folders.begin(),
                               one.written_folders.end());
    all.read_files.insert(all.read_files.end(), one.read_files.begin(), one.read_files.end());
}

void RemoveRepeated(std::vector<std::string>& paths) {
    const std::set<std::string> sorted(paths.begin(), paths.end());
    paths.assign(sorted.begin(), sorted.end());
}

/// Works for a front on this machine.
class Worker {
  public:
    Worker(std::string state, const WorkerSettings& settings, CapturedOutput& output)
        : state_(std::move(state)), settings_(settings), work_(settings, output) {
        front_ = fields::Number(Variable(worker_environment::kFront));
    }

    int Run(const std::vector<std::uint64_t>& job_numbers) {
        if (!ReadJobs(job_numbers)) {
            return 1;
        }
        Confine();
        for (const auto& [job, tasks] : jobs_) {
            if (!DoJob(job, tasks)) {
                return 1;
            }
        }
        return 0;
    }

  private:
    bool ReadJobs(const std::vector<std::uint64_t>& job_numbers) {
        for (const std::uint64_t job : job_numbers) {
            auto tasks = jobs::Read(jobs::FileOf(state_, job));
            if (!tasks) {
                Complain("job " + std::to_string(job) + " cannot be read");
                return false;
            }
            jobs_.emplace_back(job, *std::move(tasks));
        }
        return true;
    }

    /// A damaged file that found a bug could do no harm elsewhere. A folder that a renamed picture is made in
    /// could not be made any more.
    void Confine() {
        if (settings_.rename) {
            return;
        }
        Reach reach = {{state_}, {state_ + "/records"}, {work_.conversion().sensors().DatabaseFile}};
        RunSettings settings = work_.conversion().settings();
        for (const auto& [job, tasks] : jobs_) {
            for (const Task& task : tasks) {
                const PictureFiles files(task.input);
                settings.input = {files.folder, {NameIn(files.input)}};
                settings.output_folder = FolderIn(task.dng);
                if (task.mode != TaskMode::kVerify && task.mode != TaskMode::kLook) {
                    std::error_code told_later;
                    std::filesystem::create_directories(system_path::ToSystem(settings.output_folder),
                                                        told_later);
                }
                Add(ReachOf(settings, work_.conversion().sensors().DatabaseFile), reach);
            }
        }
        RemoveRepeated(reach.read_folders);
        RemoveRepeated(reach.written_folders);
        (void)EnterSandbox(reach);
    }

    /// Returns whether the work goes on.
    bool DoJob(std::uint64_t job, const std::vector<Task>& tasks) {
        std::ofstream records(system_path::ToSystem(jobs::RecordsOf(state_, job)),
                              std::ios::binary | std::ios::app);
        for (const Task& task : tasks) {
            if (stop_request::Signal() != 0 || FrontIsGone()) {
                return false;
            }
            Record begun;
            begun.picture = task.picture;
            const bool noted = task.mode == TaskMode::kLook || Write(begun, records);
            const auto record = noted ? work_.Do(task) : std::nullopt;
            if (!noted || (record && !Write(*record, records))) {
                return Complain("nothing can be written to " + state_) == 0;
            }
            if (record && record->verdict == Verdict::kDiskFull) {
                return false;
            }
        }
        return true;
    }

    /// In one piece: a worker that is killed leaves no half of it.
    static bool Write(const Record& record, std::ofstream& records) {
        const std::string bytes = RecordBytes(record);
        records.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return static_cast<bool>(records.flush());
    }

    /// The run that this belongs to was killed; nobody would hear of what comes next.
    bool FrontIsGone() const { return front_ && running_process::IsGone(*front_); }

    std::string state_;
    const WorkerSettings& settings_;
    PictureWork work_;
    std::optional<std::uint64_t> front_;
    std::vector<std::pair<std::uint64_t, std::vector<Task>>> jobs_;
};

}  // namespace

int RunWorker(std::span<const std::string> job_names) {
    stop_request::Watch();
    std::vector<std::uint64_t> job_numbers;
    for (const std::string& name : job_names) {
        const auto range = RangeFrom(name);
        if (!range) {
            return Complain("no job: " + name);
        }
        for (std::uint64_t job = range->first; job <= range->last; ++job) {
            job_numbers.push_back(job);
        }
    }
    const std::string state = Variable(worker_environment::kState);
    if (state.empty()) {
        return RunHostJobs(job_numbers);
    }
    const auto settings = jobs::ReadSettings(jobs::SettingsOf(state));
    CapturedOutput output;
    if (!settings || output.Begin(state)) {
        return Complain("the state " + state + " cannot be used");
    }
    return Worker(state, *settings, output).Run(job_numbers);
}
