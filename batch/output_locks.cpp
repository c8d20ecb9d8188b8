// SPDX-License-Identifier: MIT
#include "batch/output_locks.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "batch/shown.h"
#include "batch/state_place.h"
#include "system/folder_tools.h"
#include "system/system_path.h"

namespace {

constexpr const char* kAtWork = "another velmarcon-batch is at work on this output";

std::error_code TakeSoon(FileLock& lock, const std::string& path, FileLock::Hold hold) {
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
    const std::string locks = state_place::UsualParent() + "/.locks";
    return folder_tools::MakePrivate(locks) ? "" : locks + "/" + state_place::KeyOf(folder);
#else
    std::error_code unknown;
    return std::filesystem::is_directory(system_path::ToSystem(folder), unknown) ? folder : "";
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

std::string OutputLocks::Take(const std::string& folder, const std::vector<Tree>& trees) {
    if (const auto error = Add(folder + "/lock", FileLock::Hold::kAlone)) {
        return error == std::errc::operation_would_block
                   ? std::string(kAtWork) + "; wait for its end"
                   : "nothing can be written to " + Shown(folder) + ": " + ErrorText(error);
    }
    for (const auto& [output, hold] : LockedFolders(trees)) {
        const std::string locked = LockedFor(output);
        if (!locked.empty() && Add(locked, hold) == std::errc::operation_would_block) {
            return std::string(kAtWork) + ", or on one in it or around it (" + Shown(output) +
                   "); wait for its end";
        }
    }
    return "";
}

std::error_code OutputLocks::Add(const std::string& path, FileLock::Hold hold) {
    auto lock = std::make_unique<FileLock>();
    const std::error_code error = TakeSoon(*lock, path, hold);
    if (!error) {
        locks_.push_back(std::move(lock));
    }
    return error;
}

std::vector<int> OutputLocks::Descriptors() const {
    std::vector<int> descriptors;
    descriptors.reserve(locks_.size());
    for (const auto& lock : locks_) {
        descriptors.push_back(lock->Descriptor());
    }
    return descriptors;
}
