// SPDX-License-Identifier: MIT
#include "input/replacement_file.h"

#include <cerrno>
#include <utility>

#include "exif/system_path.h"
#include "input/file_calls.h"
#include "input/interrupted_call.h"

namespace {

std::string PartName(const std::string& folder, int number) {
    return folder + ".velmarcon-" + std::to_string(number) + ".part";
}

/// Removes what killed runs left under the names from number `first` on, up to the first that none left.
void RemoveStaleParts(const std::string& folder, int first) {
    while (file_calls::RemoveStale(PartName(folder, first))) {
        ++first;
    }
}

}  // namespace

ReplacementFile::~ReplacementFile() {
    if (!part_path_.empty()) {
        stream_.close();
        file_calls::Remove(part_path_);
    }
    if (lock_ >= 0) {
        file_calls::Close(lock_);
    }
}

int ReplacementFile::Open(const std::string& path) {
    if (const int error = file_calls::FollowLinks(path, final_path_); error != 0) {
        return error;
    }
    auto existing = file_calls::Kind::kNothing;
    if (const int error = file_calls::KindOf(final_path_, existing); error != 0) {
        return error;
    }
    if (existing == file_calls::Kind::kFolder) {
        return EISDIR;
    }
    if (existing == file_calls::Kind::kOther) {
        return EEXIST;
    }
    if (existing == file_calls::Kind::kPlainFile) {
        if (const int error = file_calls::CheckWritable(final_path_); error != 0) {
            return error;
        }
    }
    if (const int error = CreatePart(file_calls::FolderOf(final_path_)); error != 0) {
        return error;
    }
    return OpenStream();
}

int ReplacementFile::OpenStream() {
    return RepeatInterrupted([&] {
               errno = 0;
               // Not truncated: the part is new, and some file systems write a truncated file to disk as soon
               // as it is closed.
               stream_.open(system_path::ToSystem(part_path_), std::ios::binary | std::ios::in);
               return stream_.is_open() ? 0 : -1;
           }) == 0
               ? 0
               : file_calls::LastError();
}

bool ReplacementFile::Good() {
    if (!stream_ && error_ == 0) {
        error_ = file_calls::LastError();
    }
    return error_ == 0;
}

/// The part's name does not depend on the final one, so that it never is too long. A name that can't be used,
/// because another run or another user does or because something else stands there, is passed over. One that
/// was in use, and is free by now because that run has ended, is tried again.
int ReplacementFile::CreatePart(const std::string& folder) {
    constexpr int most_names = 100;
    constexpr int most_tries = 1000;
    int first_error = 0;
    int number = 0;
    for (int tries = 0; tries < most_tries && number < most_names; ++tries) {
        std::string part = PartName(folder, number);
        lock_ = file_calls::CreateLocked(part);
        if (lock_ >= 0) {
            part_path_ =
                std::move(part);  // without an allocation, which could fail and leave the file behind
            RemoveStaleParts(folder, number + 1);
            return 0;
        }
        const int error = file_calls::LastError();
        first_error = first_error != 0 ? first_error : error;
        if (file_calls::IsTaken(part)) {
            ++number;
        } else if (error != EEXIST) {
            break;  // nothing stands there: it is the folder that can't be written
        }
    }
    return first_error;
}

int ReplacementFile::Commit(std::uint64_t size) {
    errno = 0;
    stream_.close();
    if (!Good()) {
        return error_;
    }
    std::uint64_t written = 0;
    if (const int error = file_calls::SizeOf(lock_, written); error != 0) {
        return error;
    }
    if (written != size) {
        return EIO;
    }
    if (const int error = file_calls::PrepareToReplace(lock_, final_path_); error != 0) {
        return error;
    }
    if (const int error = file_calls::Rename(part_path_, final_path_); error != 0) {
        return error;
    }
    part_path_.clear();
    return 0;
}
