// SPDX-License-Identifier: MIT
#include "system/replacement_file.h"

#include <utility>

#include "system/part_files.h"
#include "system/path_names.h"
#include "system/replacement_in_steps.h"

using file_system::Kind;

/// The part file is removed while it is still open and locked.
ReplacementFile::~ReplacementFile() {
    if (!part_path_.empty()) {
        file_system::Remove(part_path_);
    }
}

std::error_code ReplacementFile::Open(const std::string& path, Existing existing,
                                      std::filesystem::perms permissions) {
    existing_ = existing;
    final_path_ = path;
    if (existing == Existing::kReplaceTarget) {
        if (const std::error_code error = file_system::FollowLinks(path, final_path_)) {
            return error;
        }
    }
    auto kind = Kind::kNothing;
    if (const std::error_code error = Look(kind)) {
        return error;
    }
    if (kind != Kind::kPlainFile) {
        return CreatePart(permissions);
    }
    const std::error_code error = file_system::CheckWritable(final_path_);
    return error ? error : CreatePart(file_system::kForOwner);
}

std::error_code ReplacementFile::OpenCopy(const std::string& path, const std::string& original) {
    const std::error_code error = file_system::FollowLinks(original, original_);
    return error ? error : Open(path, Existing::kKeep, file_system::kForOwner);
}

/// Returns an error if the final name is taken by something that may not be replaced.
std::error_code ReplacementFile::Look(Kind& kind) const {
    if (const std::error_code error = file_system::KindOf(final_path_, kind)) {
        return error;
    }
    if (kind == Kind::kFolder) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    const bool replaceable = existing_ != Existing::kKeep && kind != Kind::kOther;
    return kind == Kind::kNothing || replaceable ? std::error_code()
                                                 : std::make_error_code(std::errc::file_exists);
}

std::error_code ReplacementFile::CreatePart(std::filesystem::perms permissions) {
    constexpr int most_tries = 10;  // the first succeeds, unless somebody guesses names
    std::error_code error;
    for (int tries = 0; tries < most_tries; ++tries) {
        std::string part = path_names::SystemFolderPart(final_path_) + part_files::NewName();
        error = file_system::CreateNew(part, permissions, part_);
        if (!error) {
            part_path_ = std::move(part);  // without an allocation, which could fail and leave the file
            return {};
        }
        if (error != std::errc::file_exists) {
            break;
        }
    }
    return error;
}

void ReplacementFile::Write(std::span<const char> bytes) {
    if (!error_) {
        error_ = file_system::Write(part_, bytes);
    }
}

std::error_code ReplacementFile::Commit(std::uint64_t size) {
    if (const std::error_code error = CheckWritten(size)) {
        return error;
    }
    auto replaced = Kind::kNothing;
    if (existing_ != Existing::kKeep) {
        if (const std::error_code error = Look(replaced)) {
            return error;
        }
    }
    if (const std::error_code error = Prepare(replaced)) {
        return error;
    }
    if (const std::error_code error = TakeName(replaced)) {
        return error;
    }
    part_path_.clear();
    return {};
}

std::error_code ReplacementFile::CommitToDisk(std::uint64_t size) {
    if (const std::error_code error = CheckWritten(size)) {
        return error;
    }
    if (const std::error_code error = file_system::Synchronize(part_)) {
        return error;
    }
    const std::error_code error = Commit(size);
    return error ? error : file_system::SynchronizeFolder(path_names::SystemFolderPart(final_path_));
}

std::error_code ReplacementFile::CheckWritten(std::uint64_t size) const {
    if (error_) {
        return error_;
    }
    if (const std::error_code error = file_system::Flush(part_)) {
        return error;
    }
    std::uint64_t written = 0;
    if (const std::error_code error = file_system::SizeOf(part_, written)) {
        return error;
    }
    return written == size ? std::error_code() : std::make_error_code(std::errc::io_error);
}

/// The system may write a new file to the disk later, but a file that replaces another must be on the disk
/// before the old one is gone.
std::error_code ReplacementFile::Prepare(Kind replaced) const {
    if (!original_.empty()) {
        return file_system::TakeOver(part_, original_);
    }
    if (replaced == Kind::kNothing) {
        return {};
    }
    if (replaced == Kind::kPlainFile) {
        if (const std::error_code error = file_system::TakeOver(part_, final_path_)) {
            return error;
        }
    }
    return file_system::Synchronize(part_);
}

/// The part file's name may belong to another file by now: in a shared folder, another computer may have
/// mistaken the part file for a stale one and removed it.
std::error_code ReplacementFile::TakeName(Kind replaced) const {
    if (const std::error_code error = file_system::CheckName(part_, part_path_)) {
        return error;
    }
    if (existing_ == Existing::kKeep) {
        return file_system::RenameToFree(part_path_, final_path_);
    }
    if (replaced == Kind::kPlainFile && file_system::LosesReplacedFiles(part_path_)) {
        return replacement_in_steps::Replace(part_, part_path_, final_path_);
    }
    return file_system::Rename(part_path_, final_path_);
}
