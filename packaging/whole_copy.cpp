// SPDX-License-Identifier: MIT
#include "packaging/whole_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

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
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(begin) || !name.ends_with(kPartEnd)) {
            continue;
        }
        pid_t number = 0;
        std::from_chars(name.data() + begin.size(), name.data() + name.size(), number);
        if (name == PartName(begin, number) && ::kill(number, 0) != 0 && errno == ESRCH) {
            std::error_code ignored;
            fs::remove(entry->path(), ignored);
        }
    }
}

/// A descriptor that is closed with its scope.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { ::close(number_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;

    int number() const { return number_; }
    bool is_open() const { return number_ >= 0; }

  private:
    int number_;
};

/// Waits until the folder's names are on disk. Returns 0 or the system's error number.
int SynchronizeFolder(const fs::path& path) {
    const Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.is_open()) {
        return errno;
    }
    // Some file systems cannot do this to a folder.
    return ::fsync(folder.number()) == 0 || errno == EINVAL ? 0 : errno;
}

/// Writes all of the bytes. Returns 0 or the system's error number.
int WriteAll(int descriptor, std::span<const char> bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return written == 0 ? EIO : errno;
        }
    }
    return 0;
}

/// Copies to the end of `source`. Returns 0 or the system's error number.
int CopyBytes(int source, int part) {
    constexpr std::size_t buffer_size = 65536;
    std::vector<char> buffer(buffer_size);
    for (;;) {
        const ssize_t size = ::read(source, buffer.data(), buffer.size());
        if (size == 0) {
            return 0;
        }
        if (size < 0 && errno != EINTR) {
            return errno;
        }
        const auto bytes =
            std::span<const char>(buffer).first(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        if (const int error = WriteAll(part, bytes); error != 0) {
            return error;
        }
    }
}

/// Makes the part, which must not be there yet. Returns 0 or the system's error number. Not by
/// std::filesystem::copy_file, which takes a copy for whole that the disk had no room for.
int MakePart(const fs::path& source, const fs::path& part) {
    constexpr mode_t permissions = 0777;
    const Descriptor from(::open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!from.is_open() || ::fstat(from.number(), &status) != 0) {
        return errno;
    }
    if (!S_ISREG(status.st_mode)) {
        return EINVAL;
    }
    const Descriptor to(
        ::open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, status.st_mode & permissions));
    if (!to.is_open()) {
        return errno;
    }
    if (const int error = CopyBytes(from.number(), to.number()); error != 0) {
        return error;
    }
    return ::fsync(to.number()) == 0 ? 0 : errno;
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
    return failed != 0 ? failed : SynchronizeFolder(folder);
}
