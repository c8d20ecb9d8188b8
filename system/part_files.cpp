// SPDX-License-Identifier: MIT
#include "system/part_files.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>

#include "system/file_system.h"
#include "system/path_names.h"
#include "system/running_process.h"
#include "system/same_bytes.h"
#include "system/system_path.h"

namespace part_files {

namespace {

namespace fs = std::filesystem;

std::string OwnHost() {
    return path_names::HostPart(running_process::HostName());
}

/// Whether the run of that process can no longer be writing. A part file with this process's own number is
/// from an earlier run, since this run has not made one yet.
bool HasEnded(std::uint64_t process) {
    return process == running_process::Number() || running_process::IsGone(process);
}

/// The number of seconds without a write after which the part file `name` is stale; std::nullopt if `name` is
/// not that of a part file, or if it is that of a launcher that is still running.
std::optional<std::int64_t> AgeWhenStale(const std::string& name, const std::string& host) {
    if (const auto process = path_names::ParseLauncherPartName(name)) {
        return HasEnded(*process) ? std::optional<std::int64_t>(0) : std::nullopt;
    }
    constexpr std::int64_t day = 86400;  // s
    const auto part = path_names::ParsePartName(name);
    if (!part) {
        return std::nullopt;
    }
    return part->host == host && HasEnded(part->process) ? 0 : day;
}

/// Where a rename was cut short, a part file and a file with a name of its own may share their bytes, so that
/// removing the part file would destroy the other. Both then have the same length, time and bytes.
bool MayBeNamedFile(const fs::path& part, const std::string& host) {
    std::error_code error;
    const auto size = fs::file_size(part, error);
    const auto time = fs::last_write_time(part, error);
    fs::directory_iterator entry(part.parent_path(), error);
    while (!error && entry != fs::directory_iterator()) {
        const bool is_part =
            AgeWhenStale(system_path::FromSystem(entry->path().filename()), host).has_value();
        std::error_code other;
        if (!is_part && size > 0 && entry->file_size(other) == size &&
            entry->last_write_time(other) == time &&
            HaveSameBytes(system_path::FromSystem(part), system_path::FromSystem(entry->path()))) {
            return true;
        }
        entry.increment(error);
    }
    return false;
}

}  // namespace

std::string NewName() {
    return path_names::PartName({OwnHost(), running_process::Number()}, running_process::RandomNumber());
}

void RemoveStale(const std::string& folder) {
    const std::string host = OwnHost();
    std::error_code error;
    fs::directory_iterator entry(system_path::ToSystem(folder.empty() ? "." : folder), error);
    while (!error && entry != fs::directory_iterator()) {
        const std::string name = system_path::FromSystem(entry->path().filename());
        const auto age = AgeWhenStale(name, host);
        if (age && !(file_system::LosesReplacedFiles(folder + name) && MayBeNamedFile(entry->path(), host))) {
            file_system::RemoveAbandoned(folder + name, *age);
        }
        entry.increment(error);
    }
}

}  // namespace part_files
