// SPDX-License-Identifier: MIT
// faulty_folder FAULT SOURCE MOUNT_POINT: shows the files and folders of the folder SOURCE at MOUNT_POINT as
// a file system with that fault would, until it gets SIGTERM. Locks set there are not visible through other
// mounts of SOURCE.
#define FUSE_USE_VERSION 31

#include <dirent.h>
#include <fcntl.h>
#include <fuse3/fuse.h>
#include <strings.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

#include "tests/file_systems/folder_fault.h"

namespace file_systems {

namespace {

/// The state of this process.
struct Shown {
    int folder = -1;
    FolderFault fault = FolderFault::kNone;
    ino_t next_inode = 1000;
};

Shown shown;

bool Has(FolderFault fault) {
    return shown.fault == fault;
}

int Result(long result) {
    return result < 0 ? -errno : static_cast<int>(result);
}

int Descriptor(const struct fuse_file_info* info) {
    return static_cast<int>(info->fh);
}

/// The name that stands in `folder` for `name`, in whatever case.
std::string FoundName(const std::string& folder, const std::string& name) {
    std::string found = name;
    DIR* const list = ::fdopendir(::openat(shown.folder, folder.c_str(), O_RDONLY | O_DIRECTORY));
    while (const dirent* entry = list != nullptr ? ::readdir(list) : nullptr) {
        if (::strcasecmp(static_cast<const char*>(entry->d_name), name.c_str()) == 0) {
            found = static_cast<const char*>(entry->d_name);
        }
    }
    if (list != nullptr) {
        ::closedir(list);
    }
    return found;
}

/// The name in the folder for `path`.
std::string NameOf(const char* path) {
    std::string names = path + 1;
    if (names.empty()) {
        return ".";
    }
    if (!Has(FolderFault::kLettersOfAnyCase)) {
        return names;
    }
    std::string found = ".";
    for (std::size_t begin = 0; begin < names.size();) {
        const std::size_t end = std::min(names.find('/', begin), names.size());
        found += "/" + FoundName(found, names.substr(begin, end - begin));
        begin = end + 1;
    }
    return found;
}

void* Init(struct fuse_conn_info* /*connection*/, struct fuse_config* config) {
    // No caching: every query reaches this process.
    config->use_ino = 1;
    config->hard_remove = 1;  // an open file that is removed disappears instead of being renamed
    config->attr_timeout = 0;
    config->entry_timeout = 0;
    config->negative_timeout = 0;
    return nullptr;
}

int GetAttributes(const char* path, struct stat* status, struct fuse_file_info* info) {
    const int result = info != nullptr
                           ? ::fstat(Descriptor(info), status)
                           : ::fstatat(shown.folder, NameOf(path).c_str(), status, AT_SYMLINK_NOFOLLOW);
    if (result == 0 && S_ISREG(status->st_mode)) {
        status->st_size += Has(FolderFault::kLongSizes) ? 1 : 0;
        status->st_size -= Has(FolderFault::kShortSizes) && status->st_size > 0 ? 1 : 0;
        if (Has(FolderFault::kUnstableInodes)) {
            status->st_ino = shown.next_inode++;
        }
    }
    return Result(result);
}

int ReadFolder(const char* path, void* buffer, fuse_fill_dir_t fill, off_t /*offset*/,
               struct fuse_file_info* /*info*/, enum fuse_readdir_flags /*flags*/) {
    DIR* const list = ::fdopendir(::openat(shown.folder, NameOf(path).c_str(), O_RDONLY | O_DIRECTORY));
    if (list == nullptr) {
        return -errno;
    }
    while (const dirent* entry = ::readdir(list)) {
        fill(buffer, static_cast<const char*>(entry->d_name), nullptr, 0, fuse_fill_dir_flags{});
    }
    ::closedir(list);
    return 0;
}

/// Lets the program see the results of writes directly, without the kernel's cache.
void TakeDescriptor(struct fuse_file_info* info, int descriptor) {
    info->fh = static_cast<std::uint64_t>(descriptor);
    info->direct_io = Has(FolderFault::kShortWrites) || Has(FolderFault::kZeroWrites) ? 1 : 0;
}

int Open(const char* path, struct fuse_file_info* info) {
    const int descriptor = ::openat(shown.folder, NameOf(path).c_str(), info->flags & ~O_NOFOLLOW);
    if (descriptor >= 0) {
        TakeDescriptor(info, descriptor);
    }
    return descriptor >= 0 ? 0 : -errno;
}

int Create(const char* path, mode_t mode, struct fuse_file_info* info) {
    const int descriptor = ::openat(shown.folder, NameOf(path).c_str(), info->flags | O_CREAT, mode);
    if (descriptor >= 0) {
        TakeDescriptor(info, descriptor);
    }
    return descriptor >= 0 ? 0 : -errno;
}

int Read(const char* /*path*/, char* buffer, std::size_t size, off_t offset, struct fuse_file_info* info) {
    return Result(::pread(Descriptor(info), buffer, size, offset));
}

int Write(const char* /*path*/, const char* buffer, std::size_t size, off_t offset,
          struct fuse_file_info* info) {
    if (Has(FolderFault::kZeroWrites)) {
        return 0;
    }
    const std::size_t taken = Has(FolderFault::kShortWrites) ? (size + 1) / 2 : size;
    return Result(::pwrite(Descriptor(info), buffer, taken, offset));
}

bool IsWritten(const struct fuse_file_info* info) {
    return (info->flags & O_ACCMODE) != O_RDONLY;
}

int Flush(const char* /*path*/, struct fuse_file_info* info) {
    return Has(FolderFault::kFlushFails) && IsWritten(info) ? -EIO : 0;
}

int Release(const char* /*path*/, struct fuse_file_info* info) {
    ::close(Descriptor(info));
    return 0;
}

int Synchronize(const char* /*path*/, int /*only_data*/, struct fuse_file_info* /*info*/) {
    return Has(FolderFault::kSyncFails) ? -EIO : 0;
}

int Rename(const char* from, const char* to, unsigned int flags) {
    if (Has(FolderFault::kRenameFails)) {
        return -EIO;
    }
    if (flags != 0 && Has(FolderFault::kPlainRenameOnly)) {
        return -EINVAL;
    }
    return Result(::renameat2(shown.folder, NameOf(from).c_str(), shown.folder, NameOf(to).c_str(), flags));
}

int Link(const char* from, const char* to) {
    if (Has(FolderFault::kRenameFails)) {
        return -EIO;
    }
    if (Has(FolderFault::kPlainRenameOnly)) {
        return -EPERM;
    }
    return Result(::linkat(shown.folder, NameOf(from).c_str(), shown.folder, NameOf(to).c_str(), 0));
}

int Remove(const char* path) {
    return Result(::unlinkat(shown.folder, NameOf(path).c_str(), 0));
}

int MakeFolder(const char* path, mode_t mode) {
    return Result(::mkdirat(shown.folder, NameOf(path).c_str(), mode));
}

int RemoveFolder(const char* path) {
    return Result(::unlinkat(shown.folder, NameOf(path).c_str(), AT_REMOVEDIR));
}

int Truncate(const char* path, off_t size, struct fuse_file_info* info) {
    if (info != nullptr) {
        return Result(::ftruncate(Descriptor(info), size));
    }
    const int descriptor = ::openat(shown.folder, NameOf(path).c_str(), O_WRONLY);
    const int result = Result(::ftruncate(descriptor, size));
    ::close(descriptor);
    return result;
}

int ChangeMode(const char* path, mode_t mode, struct fuse_file_info* /*info*/) {
    return Result(::fchmodat(shown.folder, NameOf(path).c_str(), mode, 0));
}

int ChangeOwner(const char* path, uid_t user, gid_t group, struct fuse_file_info* /*info*/) {
    return Result(::fchownat(shown.folder, NameOf(path).c_str(), user, group, AT_SYMLINK_NOFOLLOW));
}

int SetTimes(const char* path, const struct timespec* times, struct fuse_file_info* /*info*/) {
    return Result(::utimensat(shown.folder, NameOf(path).c_str(), times, AT_SYMLINK_NOFOLLOW));
}

int TellRoom(const char* /*path*/, struct statvfs* room) {
    return Result(::fstatvfs(shown.folder, room));
}

struct fuse_operations Operations() {
    struct fuse_operations operations = {};
    operations.init = Init;
    operations.getattr = GetAttributes;
    operations.readdir = ReadFolder;
    operations.open = Open;
    operations.create = Create;
    operations.read = Read;
    operations.write = Write;
    operations.flush = Flush;
    operations.release = Release;
    operations.fsync = Synchronize;
    operations.rename = Rename;
    operations.link = Link;
    operations.unlink = Remove;
    operations.mkdir = MakeFolder;
    operations.rmdir = RemoveFolder;
    operations.truncate = Truncate;
    operations.chmod = ChangeMode;
    operations.chown = ChangeOwner;
    operations.utimens = SetTimes;
    operations.statfs = TellRoom;
    return operations;
}

int Main(std::span<char*> arguments) {
    const std::string fault = arguments[1];
    const char* const source = arguments[2];
    const auto* const named = std::ranges::find(kFolderFaults, fault, &NamedFault::name);
    shown.folder = ::open(source, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (named == kFolderFaults.end() || shown.folder < 0) {
        std::fprintf(stderr, "unknown fault or folder\n");
        return EXIT_FAILURE;
    }
    shown.fault = named->fault;
    std::string foreground = "-f";
    std::string one_thread = "-s";
    std::array<char*, 4> options = {arguments[0], foreground.data(), one_thread.data(), arguments[3]};
    const struct fuse_operations operations = Operations();
    return fuse_main(static_cast<int>(options.size()), options.data(), &operations, nullptr);
}

}  // namespace

}  // namespace file_systems

int main(int argc, char** argv) {
    constexpr std::size_t expected = 4;
    return static_cast<std::size_t>(argc) == expected ? file_systems::Main(std::span(argv, expected))
                                                      : EXIT_FAILURE;
}
