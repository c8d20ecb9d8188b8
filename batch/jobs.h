// SPDX-License-Identifier: MIT
#ifndef VELMARCON_BATCH_JOBS_H
#define VELMARCON_BATCH_JOBS_H

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

/// What a worker is to do with a picture.
enum class TaskMode : std::uint8_t {
    kConvert,  ///< make the DNG, unless one that counts is there; with -r, replace it
    kCheck,    ///< keep the DNG that is there if it counts, also with -r
    kProve,    ///< the same, but compare it with the picture, made with `options`
    kLook,     ///< tell only what can be told without converting
    kVerify,   ///< compare the DNG that is there with the picture; convert nothing
};

struct Task {
    std::uint64_t picture = 0;  ///< number in the run
    TaskMode mode = TaskMode::kConvert;
    std::string input;        ///< path of the RAW file, or of the DNG that the camera wrote
    std::string dng;          ///< path of the DNG that is to be
    std::string fingerprint;  ///< for kProve and kVerify: the one that the DNG had; empty when not known
    std::vector<std::string> options;  ///< for kProve and kVerify: those that it was made with
    bool options_known = true;         ///< or else they are only supposed
};

/// What is the same for all pictures of a run.
struct WorkerSettings {
    std::vector<std::string> options;  ///< of velmarcon
    std::string databases;             ///< folder of lensdb.ini and sensdb.ini, with its separator
    bool verify = true;                ///< read each new DNG back
    bool rename = false;
    bool keep_time = false;
    bool checksums = false;
    bool accept_damaged = false;
};

/// They are handed from the front to its workers in files of the state's folder.
namespace jobs {

std::string FileOf(const std::string& state, std::uint64_t job);
std::string RecordsOf(const std::string& state, std::uint64_t job);
std::string SettingsOf(const std::string& state);

[[nodiscard]] std::error_code Write(const std::string& path, const std::vector<Task>& tasks);
std::optional<std::vector<Task>> Read(const std::string& path);

[[nodiscard]] std::error_code WriteSettings(const std::string& path, const WorkerSettings& settings);
std::optional<WorkerSettings> ReadSettings(const std::string& path);

}  // namespace jobs

#endif  // VELMARCON_BATCH_JOBS_H
