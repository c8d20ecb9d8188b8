// SPDX-License-Identifier: MIT
#include "system/replacement_in_steps.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <span>
#include <utility>
#include <vector>

#include "system/file_system.h"
#include "system/input_file.h"
#include "system/part_files.h"

namespace replacement_in_steps {

namespace {

constexpr int kMostOldFiles = 9;

/// An open file, or none.
class OpenFile {
  public:
    OpenFile() = default;
    ~OpenFile() {
        if (descriptor >= 0) {
            file_system::Close(descriptor);
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    OpenFile(OpenFile&&) = delete;
    OpenFile& operator=(OpenFile&&) = delete;

    int descriptor = -1;
};

/// Where the copy of the file stands, `number` from 1 on.
std::string OldName(const std::string& path, int number) {
    return path + std::string(kOldEnd) + (number == 1 ? "" : std::to_string(number));
}

/// Writes what `from` holds to the open file, piece by piece through `buffer`. Returns 0 or an error number.
int WriteAll(InputFile& from, std::vector<char>& buffer, int descriptor) {
    from.stream().seekg(0);
    for (std::uint64_t left = from.size(); left > 0;) {
        const auto length = static_cast<std::size_t>(std::min<std::uint64_t>(left, buffer.size()));
        if (!from.stream().read(buffer.data(), static_cast<std::streamsize>(length))) {
            return EIO;
        }
        if (const int error = file_system::Write(descriptor, std::span(buffer).first(length)); error != 0) {
            return error;
        }
        left -= length;
    }
    return 0;
}

/// Returns 0 or an error number, EIO when the open file has another length than `size`.
int CheckSize(int descriptor, std::uint64_t size) {
    if (const int error = file_system::Flush(descriptor); error != 0) {
        return error;
    }
    std::uint64_t written = 0;
    const int error = file_system::SizeOf(descriptor, written);
    return error == 0 && written != size ? EIO : error;
}

/// Makes `to`, where nothing stands, a copy of the file `from`, and waits until it is on the disk. Returns 0
/// or an error number; then there is no copy. EEXIST: something stands there.
int Copy(const std::string& from, const std::string& to, OpenFile& copy) {
    constexpr std::size_t piece = std::size_t{1} << 20U;
    std::vector<char> buffer(piece);
    InputFile file;
    errno = 0;
    if (!file.Open(from)) {
        return file_system::LastError();
    }
    copy.descriptor = file_system::CreateNew(to, file_system::Readers::kOwner);
    if (copy.descriptor < 0) {
        return file_system::LastError();
    }
    int error = WriteAll(file, buffer, copy.descriptor);
    error = error != 0 ? error : CheckSize(copy.descriptor, file.size());
    error = error != 0 ? error : file_system::TakeOver(copy.descriptor, from);
    error = error != 0 ? error : file_system::SynchronizeVolume(copy.descriptor);
    if (error != 0) {
        file_system::Remove(to);
    }
    return error;
}

/// Writes the copy under its own name: a rename cut short could leave it two names, and whoever removes the
/// file under one takes the bytes of the other. Returns 0 or an error number.
int KeepCopy(const std::string& path, std::string& old) {
    int error = 0;
    for (int number = 1; number <= kMostOldFiles; ++number) {
        old = OldName(path, number);
        OpenFile copy;
        error = Copy(path, old, copy);
        if (error != EEXIST) {
            break;
        }
    }
    return error;
}

/// The room of the file, which is open until then, is given to others only when the disk knows that the file
/// is gone: before, a power cut could bring its name back. `descriptor` is of another file on that disk.
void RemoveForGood(const std::string& path, int descriptor) {
    OpenFile removed;
    (void)file_system::Hold(path, removed.descriptor);
    file_system::Remove(path);
    (void)file_system::SynchronizeVolume(descriptor);
}

/// Returns 0 or an error number.
int TakeName(int descriptor, const std::string& part, const std::string& path) {
    const int error = file_system::Rename(part, path);
    return error != 0 ? error : file_system::SynchronizeVolume(descriptor);
}

/// The copy that was made last; empty when there is none.
std::string LastOldFile(const std::string& path) {
    std::string last;
    for (int number = 1; number <= kMostOldFiles; ++number) {
        std::string old = OldName(path, number);
        auto kind = file_system::Kind::kNothing;
        if (file_system::KindOf(old, kind) != 0 || kind != file_system::Kind::kPlainFile) {
            break;
        }
        last = std::move(old);
    }
    return last;
}

/// Returns 0 or an error number; then `old` is as it was.
int MoveBack(const std::string& old, const std::string& path) {
    const std::string part = file_system::FolderOf(path) + part_files::NewName();
    OpenFile copy;
    if (const int error = Copy(old, part, copy); error != 0) {
        return error;
    }
    if (const int error = file_system::RenameToFree(part, path); error != 0) {
        file_system::Remove(part);
        return error;
    }
    if (file_system::SynchronizeVolume(copy.descriptor) == 0) {
        RemoveForGood(old, copy.descriptor);
    }
    return 0;
}

}  // namespace

int Replace(int descriptor, const std::string& part, const std::string& path) {
    OpenFile replaced;  // as long as its room is in use, no other file gets it
    if (const int error = file_system::Hold(path, replaced.descriptor); error != 0) {
        return error;
    }
    std::string old;
    if (const int error = KeepCopy(path, old); error != 0) {
        return error;
    }
    const int error = TakeName(descriptor, part, path);
    const bool is_done = error == 0;
    const bool is_as_before = file_system::CheckName(replaced.descriptor, path) == 0;
    if (is_done || is_as_before) {
        RemoveForGood(old, descriptor);
    }
    return error;
}

bool PutBack(const std::string& path) {
    const std::string old = LastOldFile(path);
    if (old.empty() || file_system::IsTaken(path) || !file_system::LosesReplacedFiles(old)) {
        return false;
    }
    const int error = MoveBack(old, path);
    if (error == 0) {
        std::printf("%s: put back from %s: the run that was replacing it did not end\n", path.c_str(),
                    old.c_str());
    } else {
        std::printf("%s: not put back from %s: %s\n", path.c_str(), old.c_str(),
                    file_system::ErrorText(error));
    }
    return error == 0;
}

}  // namespace replacement_in_steps
