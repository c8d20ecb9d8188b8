// SPDX-License-Identifier: MIT
#include "system/replacement_file.h"

#include <cerrno>
#include <utility>

#include "system/part_files.h"
#include "system/replacement_in_steps.h"

using file_system::Kind;
using file_system::Readers;

ReplacementFile::~ReplacementFile() {
    if (!part_path_.empty()) {
        file_system::Remove(part_path_);
    }
    if (descriptor_ >= 0) {
        file_system::Close(descriptor_);
    }
}

int ReplacementFile::Open(const std::string& path, Existing existing) {
    existing_ = existing;
    final_path_ = path;
    if (existing == Existing::kReplaceTarget) {
        if (const int error = file_system::FollowLinks(path, final_path_); error != 0) {
            return error;
        }
    }
    auto kind = Kind::kNothing;
    if (const int error = Look(kind); error != 0) {
        return error;
    }
    if (kind != Kind::kPlainFile) {
        return CreatePart(Readers::kAsUsual);
    }
    const int error = file_system::CheckWritable(final_path_);
    return error != 0 ? error : CreatePart(Readers::kOwner);
}

/// Returns an error number when what stands at the final name is not replaced.
int ReplacementFile::Look(Kind& kind) const {
    if (const int error = file_system::KindOf(final_path_, kind); error != 0) {
        return error;
    }
    if (kind == Kind::kFolder) {
        return EISDIR;
    }
    const bool replaceable = existing_ != Existing::kKeep && kind != Kind::kOther;
    return kind == Kind::kNothing || replaceable ? 0 : EEXIST;
}

int ReplacementFile::CreatePart(Readers readers) {
    constexpr int most_tries = 10;  // the first succeeds, unless somebody plays tricks
    int error = 0;
    for (int tries = 0; tries < most_tries; ++tries) {
        std::string part = file_system::FolderOf(final_path_) + part_files::NewName();
        descriptor_ = file_system::CreateNew(part, readers);
        if (descriptor_ >= 0) {
            part_path_ = std::move(part);  // without an allocation, which could fail and leave the file
            return 0;
        }
        error = file_system::LastError();
        if (error != EEXIST) {
            break;
        }
    }
    return error;
}

bool ReplacementFile::Write(std::span<const char> bytes) {
    if (error_ == 0) {
        error_ = file_system::Write(descriptor_, bytes);
    }
    return error_ == 0;
}

int ReplacementFile::Commit(std::uint64_t size) {
    if (const int error = CheckWritten(size); error != 0) {
        return error;
    }
    auto replaced = Kind::kNothing;
    if (existing_ != Existing::kKeep) {
        if (const int error = Look(replaced); error != 0) {
            return error;
        }
    }
    if (const int error = Prepare(replaced); error != 0) {
        return error;
    }
    if (const int error = TakeName(replaced); error != 0) {
        return error;
    }
    part_path_.clear();
    return 0;
}

int ReplacementFile::CheckWritten(std::uint64_t size) const {
    if (error_ != 0) {
        return error_;
    }
    if (const int error = file_system::Flush(descriptor_); error != 0) {
        return error;
    }
    std::uint64_t written = 0;
    if (const int error = file_system::SizeOf(descriptor_, written); error != 0) {
        return error;
    }
    return written == size ? 0 : EIO;
}

/// A new file may wait for the system to write it; one that replaces another must be on the disk before that
/// one goes.
int ReplacementFile::Prepare(Kind replaced) const {
    if (replaced == Kind::kNothing) {
        return 0;
    }
    if (replaced == Kind::kPlainFile) {
        if (const int error = file_system::TakeOver(descriptor_, final_path_); error != 0) {
            return error;
        }
    }
    return file_system::Synchronize(descriptor_);
}

/// Under the part's name there may be another file by now: where a folder is shared, another computer can
/// take it for a stale one.
int ReplacementFile::TakeName(Kind replaced) const {
    if (const int error = file_system::CheckName(descriptor_, part_path_); error != 0) {
        return error;
    }
    if (existing_ == Existing::kKeep) {
        return file_system::RenameToFree(part_path_, final_path_);
    }
    if (replaced == Kind::kPlainFile && file_system::LosesReplacedFiles(part_path_)) {
        return replacement_in_steps::Replace(descriptor_, part_path_, final_path_);
    }
    return file_system::Rename(part_path_, final_path_);
}
