// SPDX-License-Identifier: MIT
#include "batch/disk_space.h"

#include <algorithm>
#include <map>
#include <string>

#include "batch/existing_folder.h"
#include "batch/file_facts.h"
#include "batch/picture.h"
#include "system/file_system.h"
#include "system/folder_tools.h"

namespace {

/// What is needed on one file system.
struct Need {
    std::uint64_t bytes = 0;
    std::string folder;  ///< one that is on it, or will be
};

/// By the number of the file system, 0 for those that cannot be told.
std::map<std::uint64_t, Need> NeedsOf(std::span<const Task> tasks, bool preview) {
    constexpr std::uint64_t dng_bytes = 21'020'000;
    constexpr std::uint64_t preview_bytes = 231'000;
    std::map<std::uint64_t, Need> needs;
    std::string folder;
    std::uint64_t device = 0;
    for (const Task& task : tasks) {
        if (task.mode != TaskMode::kConvert || file_system::IsTaken(task.dng)) {
            continue;
        }
        if (const std::string own = FolderIn(task.dng); own != folder) {
            folder = own;
            const auto state = StateAt(ExistingFolder(folder));
            device = state ? state->device : 0;
        }
        Need& need = needs[device];
        need.bytes += dng_bytes + (preview ? preview_bytes : 0);
        need.folder = folder;
    }
    return needs;
}

}  // namespace

Space SpaceFor(std::span<const Task> tasks, bool preview) {
    Space space;
    bool is_first = true;
    for (const auto& [device, need] : NeedsOf(tasks, preview)) {
        space.needed += need.bytes;
        std::uint64_t free = 0;
        if (!folder_tools::FreeBytes(ExistingFolder(need.folder), free)) {
            space.enough = space.enough && need.bytes <= free;
            space.free = is_first ? free : std::min(space.free, free);
            is_first = false;
        }
    }
    return space;
}
