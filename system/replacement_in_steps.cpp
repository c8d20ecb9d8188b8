// SPDX-License-Identifier: MIT
#include "system/replacement_in_steps.h"

#include <cstdint>
#include <cstdio>
#include <span>
#include <utility>

#include "system/file_system.h"
#include "system/input_file.h"
#include "system/part_files.h"
#include "system/path_names.h"
#include "system/system_error.h"

namespace replacement_in_steps {

namespace {

/// Writes the content of `from` to the open file.
std::error_code WriteAll(InputFile& from, const Handle& file) {
    std::error_code error;
    const bool whole = from.ReadPieces([&](std::span<const char> piece) {
        error = file_system::Write(file, piece);
        return !error;
    });
    return whole || error ? error : std::make_error_code(std::errc::io_error);
}

/// Returns io_error if the length of the open file is not `size`.
std::error_code CheckSize(const Handle& file, std::uint64_t size) {
    if (const std::error_code error = file_system::Flush(file)) {
        return error;
    }
    std::uint64_t written = 0;
    const std::error_code error = file_system::SizeOf(file, written);
    return !error && written != size ? std::make_error_code(std::errc::io_error) : error;
}

/// Copies the file `from` to `to` and waits until the copy is on the disk. Returns file_exists if `to`
/// exists. After an error there is no copy.
std::error_code Copy(const std::string& from, const std::string& to, Handle& copy) {
    InputFile file;
    if (!file.Open(from)) {
        return file.error();
    }
    if (const std::error_code error = file_system::CreateNew(to, file_system::kForOwner, copy)) {
        return error;
    }
    std::error_code error = WriteAll(file, copy);
    error = error ? error : CheckSize(copy, file.size());
    error = error ? error : file_system::TakeOver(copy, from);
    error = error ? error : file_system::SynchronizeVolume(copy);
    if (error) {
        file_system::Remove(to);
    }
    return error;
}

/// Writes the copy directly under its own name: a rename that is cut short could leave it with two names, and
/// removing the file under one name would destroy the bytes under the other.
std::error_code KeepCopy(const std::string& path, std::string& old) {
    std::error_code error;
    for (int number = 1; number <= path_names::kMostOldNames; ++number) {
        old = path_names::OldName(path, number);
        Handle copy;
        error = Copy(path, old, copy);
        if (error != std::errc::file_exists) {
            break;
        }
    }
    return error;
}

/// Removes the file, but keeps it open until the removal is on the disk, so that other files get its space
/// only then: before, a power cut could bring its name back. `other` is another file on that disk.
void RemoveForGood(const std::string& path, const Handle& other) {
    Handle removed;
    (void)file_system::Hold(path, removed);
    file_system::Remove(path);
    (void)file_system::SynchronizeVolume(other);
}

std::error_code TakeName(const Handle& file, const std::string& part, const std::string& path) {
    const std::error_code error = file_system::Rename(part, path);
    return error ? error : file_system::SynchronizeVolume(file);
}

/// The name of the copy that was made last; empty if there is none.
std::string LastOldFile(const std::string& path) {
    std::string last;
    for (int number = 1; number <= path_names::kMostOldNames; ++number) {
        std::string old = path_names::OldName(path, number);
        auto kind = file_system::Kind::kNothing;
        if (file_system::KindOf(old, kind) || kind != file_system::Kind::kPlainFile) {
            break;
        }
        last = std::move(old);
    }
    return last;
}

/// After an error `old` is unchanged.
std::error_code MoveBack(const std::string& old, const std::string& path) {
    const std::string part = path_names::SystemFolderPart(path) + part_files::NewName();
    Handle copy;
    if (const std::error_code error = Copy(old, part, copy)) {
        return error;
    }
    if (const std::error_code error = file_system::RenameToFree(part, path)) {
        file_system::Remove(part);
        return error;
    }
    if (!file_system::SynchronizeVolume(copy)) {
        RemoveForGood(old, copy);
    }
    return {};
}

}  // namespace

std::error_code Replace(const Handle& file, const std::string& part, const std::string& path) {
    Handle replaced;  // no other file gets its space while it is open
    if (const std::error_code error = file_system::Hold(path, replaced)) {
        return error;
    }
    std::string old;
    if (const std::error_code error = KeepCopy(path, old)) {
        return error;
    }
    const std::error_code error = TakeName(file, part, path);
    const bool is_done = !error;
    const bool is_as_before = !file_system::CheckName(replaced, path);
    if (is_done || is_as_before) {
        RemoveForGood(old, file);
    }
    return error;
}

bool PutBack(const std::string& path) {
    const std::string old = LastOldFile(path);
    if (old.empty() || file_system::IsTaken(path) || !file_system::LosesReplacedFiles(old)) {
        return false;
    }
    const std::error_code error = MoveBack(old, path);
    if (!error) {
        std::printf("%s: restored from %s: the run that was replacing it did not finish\n", path.c_str(),
                    old.c_str());
    } else {
        std::printf("%s: not restored from %s: %s\n", path.c_str(), old.c_str(), system_error::Text(error));
    }
    return !error;
}

}  // namespace replacement_in_steps
