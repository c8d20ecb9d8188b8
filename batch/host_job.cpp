// SPDX-License-Identifier: MIT
#include "batch/host_job.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <system_error>
#include <vector>

#include "batch/fingerprint.h"
#include "batch/jobs.h"
#include "batch/picture.h"
#include "batch/picture_work.h"
#include "batch/read_back.h"
#include "batch/records.h"
#include "system/captured_output.h"
#include "system/file_system.h"
#include "system/stop_request.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

/// The pictures of one job.
class HostJob {
  public:
    HostJob(std::uint64_t number, PictureWork& work)
        : folder_(std::string(host_job::kSent) + "/" + std::to_string(number)),
          archive_path_(std::string(host_job::kBack) + "/" + std::to_string(number)),
          work_(work) {}

    /// Returns the bytes of the records; nothing when the files are not all there, or when it was stopped.
    std::optional<std::string> Run() {
        const auto tasks = jobs::Read(folder_ + "/" + host_job::kJob);
        std::error_code error;
        fs::create_directory(host_job::kBack, error);
        archive_.open(archive_path_, std::ios::binary | std::ios::trunc);
        if (!tasks || !archive_) {
            return std::nullopt;
        }
        std::string records;
        for (std::size_t i = 0; i < tasks->size(); ++i) {
            auto record = stop_request::Signal() == 0 ? Do(i, (*tasks)[i]) : std::nullopt;
            if (!record) {
                return std::nullopt;
            }
            records += RecordBytes(*record);
        }
        archive_.close();
        fs::remove_all(folder_, error);
        return archive_ ? std::optional(records) : std::nullopt;
    }

  private:
    /// The conversion goes by names: the files get those that they have at home.
    bool GiveNames(std::size_t number, const std::string& folder, const Task& task) const {
        std::error_code error;
        fs::create_directories(system_path::ToSystem(folder + "out"), error);
        const std::string base = folder + WithoutExtension(task.input);
        const std::string sent = folder_ + "/";
        (void)file_system::Rename(sent + host_job::FileOf(number, "JPG"), base + ".JPG");
        (void)file_system::Rename(sent + host_job::FileOf(number, "BIA"), base + ".BIA");
        (void)file_system::Rename(sent + host_job::FileOf(number, "RAW"), folder + task.input);
        return file_system::IsTaken(folder + task.input);
    }

    std::optional<Record> Do(std::size_t number, const Task& task) {
        const std::string folder = folder_ + "/" + std::to_string(number) + "/";
        if (!GiveNames(number, folder, task)) {
            return std::nullopt;
        }
        Task here = task;
        here.input = folder + task.input;
        here.dng = folder + "out/" + WithoutExtension(task.input) + ".DNG";
        auto record = work_.Do(here);
        if (record && record->verdict == Verdict::kConverted && !Pack(here.dng, *record)) {
            return std::nullopt;
        }
        std::error_code error;
        fs::remove_all(system_path::ToSystem(folder), error);
        return record;
    }

    bool Pack(const std::string& path, Record& record) {
        if (!dng_.Load(path)) {
            return false;
        }
        const auto begin = static_cast<std::uint64_t>(archive_.tellp());
        const auto length = dng_.bytes().size();
        archive_.write(reinterpret_cast<const char*>(dng_.bytes().data()),
                       static_cast<std::streamsize>(length));
        record.dng = std::to_string(begin) + " " + std::to_string(length);
        Fingerprint fingerprint;
        fingerprint.Add(dng_.bytes());
        record.fingerprint = fingerprint.Hex();
        return static_cast<bool>(archive_);
    }

    std::string folder_;
    std::string archive_path_;
    PictureWork& work_;
    std::ofstream archive_;
    ReadBack dng_;
};

}  // namespace

namespace host_job {

std::string FileOf(std::size_t number, const std::string& extension) {
    return std::to_string(number) + "." + extension;
}

}  // namespace host_job

int RunHostJobs(std::span<const std::uint64_t> job_numbers) {
    auto settings = jobs::ReadSettings(host_job::kSettings);
    if (!settings) {
        return 1;
    }
    settings->databases = std::string(host_job::kData) + "/";
    std::string records;
    {
        CapturedOutput output;
        if (output.Begin(".")) {
            return 1;
        }
        PictureWork work(*settings, output);
        for (const std::uint64_t number : job_numbers) {
            const auto done = HostJob(number, work).Run();
            if (!done) {
                return 1;
            }
            records += *done;
        }
    }
    const bool told = std::fwrite(records.data(), 1, records.size(), stdout) == records.size();
    return told && std::fflush(stdout) == 0 ? 0 : 1;
}
