// SPDX-License-Identifier: MIT
#include "packaging/whole_copy.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <string>
#include <string_view>
#include <system_error>

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPartEnd = ".part";

/// What the names of all parts of this copy begin with: ".lensdb-".
std::string PartBegin(const fs::path& final_path) {
    return "." + final_path.stem().string() + "-";
}

/// The name of what process `number` copies.
fs::path PartName(const std::string& begin, pid_t number) {
    return begin + std::to_string(number) + std::string(kPartEnd);
}

/// Removes what processes left in the folder that are no more.
void RemoveStaleParts(const fs::path& folder, const std::string& begin) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        const std::string name = entry.path().filename().string();
        if (!name.starts_with(begin) || !name.ends_with(kPartEnd)) {
            continue;
        }
        pid_t number = 0;
        std::from_chars(name.data() + begin.size(), name.data() + name.size(), number);
        if (name == PartName(begin, number) && ::kill(number, 0) != 0 && errno == ESRCH) {
            fs::remove(entry.path(), error);
        }
    }
}

/// Waits until the file or folder is on disk. Returns 0 or the system's error number.
int Synchronize(const fs::path& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return errno;
    }
    const int error = ::fsync(descriptor) == 0 ? 0 : errno;
    ::close(descriptor);
    return error;
}

/// Gives `part` the name `final_path` unless that is taken. Not by renaming, which replaces what is there;
/// only a file system without hard links leaves nothing else.
int GiveName(const fs::path& part, const fs::path& final_path) {
    if (::link(part.c_str(), final_path.c_str()) == 0) {
        return 0;
    }
    if (errno == EEXIST) {
        return EEXIST;
    }
    std::error_code error;
    if (fs::exists(fs::symlink_status(final_path, error))) {
        return EEXIST;
    }
    fs::rename(part, final_path, error);
    return error.value();
}

/// Makes the part, which must not be there yet. Returns 0 or the system's error number.
int MakePart(const fs::path& source, const fs::path& part) {
    std::error_code error;
    fs::copy_file(source, part, error);
    if (error) {
        return error.value();
    }
    const bool whole = fs::file_size(part, error) == fs::file_size(source, error) && !error;
    return whole ? Synchronize(part) : EIO;
}

}  // namespace

int CopyWhole(const std::filesystem::path& source, const std::filesystem::path& final_path) {
    const fs::path folder = final_path.parent_path();
    const std::string begin = PartBegin(final_path);
    RemoveStaleParts(folder, begin);
    const fs::path part = folder / PartName(begin, ::getpid());
    int failed = MakePart(source, part);
    if (failed == EEXIST) {
        return EBUSY;  // a process of another machine, with our number, is at it
    }
    if (failed == 0) {
        failed = GiveName(part, final_path);
    }
    std::error_code ignored;
    fs::remove(part, ignored);
    if (failed != 0) {
        return failed;
    }
    const int error = Synchronize(folder);
    return error == EINVAL ? 0 : error;  // a file system that cannot do this to a folder
}
