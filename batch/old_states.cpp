// SPDX-License-Identifier: MIT
#include "batch/old_states.h"

#include <chrono>
#include <filesystem>
#include <system_error>
#include <vector>

#include "system/file_lock.h"
#include "system/file_system.h"
#include "system/system_path.h"

namespace {

namespace fs = std::filesystem;

/// Names that only a state has: 16 hexadecimal digits.
bool IsState(const std::string& name) {
    constexpr std::size_t digits = 16;
    return name.size() == digits && name.find_first_not_of("0123456789abcdef") == std::string::npos;
}

/// The ledger is the last file that an orderly end writes; an interrupted run still has its beginning.
bool IsOld(const fs::path& state) {
    constexpr auto age = std::chrono::hours(24 * 90);
    std::error_code error;
    const auto written = fs::last_write_time(state / "ledger", error);
    return !error && !fs::exists(state / "begun", error) && !error &&
           fs::file_time_type::clock::now() - written > age;
}

}  // namespace

void RemoveOldStates(const std::string& parent, const std::string& own) {
    std::vector<fs::path> old;
    std::error_code error;
    for (fs::directory_iterator entry(system_path::ToSystem(parent), error);
         !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = system_path::FromSystem(entry->path().filename());
        std::error_code unknown;
        if (name != own && IsState(name) &&
            entry->symlink_status(unknown).type() == fs::file_type::directory && IsOld(entry->path())) {
            old.push_back(entry->path());
        }
    }
    for (const fs::path& state : old) {
        FileLock lock;
        if (!lock.Take(system_path::FromSystem(state / "lock"))) {
            fs::remove_all(state, error);
        }
    }
}
