// SPDX-License-Identifier: MIT
#include "tests/faults/io_call.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <system_error>
#include <vector>

namespace faults {

namespace {

/// Which argument of a call identifies its file.
enum class Names { kDescriptor, kPath, kPathInFolder };

struct KnownCall {
    std::uint64_t number;
    const char* name;
    IoKind kind;
    Names names;
};

// Some machines lack the older calls and have only their replacements.
constexpr auto kKnownCalls = std::to_array<KnownCall>({
#ifdef SYS_open
    {SYS_open, "open", IoKind::kOpen, Names::kPath},
    {SYS_stat, "stat", IoKind::kStatus, Names::kPath},
    {SYS_lstat, "lstat", IoKind::kStatus, Names::kPath},
    {SYS_access, "access", IoKind::kAccess, Names::kPath},
    {SYS_readlink, "readlink", IoKind::kLink, Names::kPath},
    {SYS_rename, "rename", IoKind::kRename, Names::kPath},
    {SYS_link, "link", IoKind::kRename, Names::kPath},
    {SYS_unlink, "unlink", IoKind::kRemove, Names::kPath},
    {SYS_rmdir, "rmdir", IoKind::kRemove, Names::kPath},
#endif
#ifdef SYS_newfstatat
    {SYS_newfstatat, "newfstatat", IoKind::kStatus, Names::kPathInFolder},
#endif
#ifdef SYS_statx
    {SYS_statx, "statx", IoKind::kStatus, Names::kPathInFolder},
#endif
#ifdef SYS_renameat
    {SYS_renameat, "renameat", IoKind::kRename, Names::kPathInFolder},
#endif
#ifdef SYS_renameat2
    {SYS_renameat2, "renameat2", IoKind::kRename, Names::kPathInFolder},
#endif
#ifdef SYS_faccessat2
    {SYS_faccessat2, "faccessat2", IoKind::kAccess, Names::kPathInFolder},
#endif
    {SYS_openat, "openat", IoKind::kOpen, Names::kPathInFolder},
    {SYS_faccessat, "faccessat", IoKind::kAccess, Names::kPathInFolder},
    {SYS_readlinkat, "readlinkat", IoKind::kLink, Names::kPathInFolder},
    {SYS_linkat, "linkat", IoKind::kRename, Names::kPathInFolder},
    {SYS_unlinkat, "unlinkat", IoKind::kRemove, Names::kPathInFolder},
    {SYS_read, "read", IoKind::kRead, Names::kDescriptor},
    {SYS_readv, "readv", IoKind::kRead, Names::kDescriptor},
    {SYS_pread64, "pread", IoKind::kRead, Names::kDescriptor},
    {SYS_write, "write", IoKind::kWrite, Names::kDescriptor},
    {SYS_writev, "writev", IoKind::kWrite, Names::kDescriptor},
    {SYS_pwrite64, "pwrite", IoKind::kWrite, Names::kDescriptor},
    {SYS_ftruncate, "ftruncate", IoKind::kWrite, Names::kDescriptor},
    {SYS_lseek, "lseek", IoKind::kSeek, Names::kDescriptor},
    {SYS_fstat, "fstat", IoKind::kStatus, Names::kDescriptor},
    {SYS_statfs, "statfs", IoKind::kStatus, Names::kPath},
    {SYS_fcntl, "fcntl", IoKind::kDuplicate, Names::kDescriptor},
    {SYS_llistxattr, "llistxattr", IoKind::kAttribute, Names::kPath},
    {SYS_lgetxattr, "lgetxattr", IoKind::kAttribute, Names::kPath},
    {SYS_fsetxattr, "fsetxattr", IoKind::kAttribute, Names::kDescriptor},
    {SYS_fremovexattr, "fremovexattr", IoKind::kAttribute, Names::kDescriptor},
    {SYS_getdents64, "getdents", IoKind::kList, Names::kDescriptor},
    {SYS_flock, "flock", IoKind::kLock, Names::kDescriptor},
    {SYS_fchown, "fchown", IoKind::kOwner, Names::kDescriptor},
    {SYS_fchmod, "fchmod", IoKind::kOwner, Names::kDescriptor},
    {SYS_fsync, "fsync", IoKind::kSync, Names::kDescriptor},
    {SYS_fdatasync, "fdatasync", IoKind::kSync, Names::kDescriptor},
    {SYS_syncfs, "syncfs", IoKind::kSync, Names::kDescriptor},
    {SYS_close, "close", IoKind::kClose, Names::kDescriptor},
});

bool IsVector(const support::SystemCall& call) {
    return call.number == SYS_readv || call.number == SYS_writev;
}

IoKind KindOf(const KnownCall& known, const support::SystemCall& call) {
    if (known.kind == IoKind::kWrite && call.arguments[0] == STDOUT_FILENO) {
        return IoKind::kPrint;
    }
    if (known.kind == IoKind::kOpen) {
        const std::size_t flags = known.names == Names::kPath ? 1 : 2;
        return (call.arguments.at(flags) & O_CREAT) != 0 ? IoKind::kCreate : IoKind::kOpen;
    }
    return known.kind;
}

/// The file of a descriptor in the program; empty if it is not a file: sanitizers use a pipe to test whether
/// memory is readable.
std::string FileOf(const support::TracedProgram& program, std::uint64_t descriptor) {
    std::error_code none;
    const std::string link =
        "/proc/" + std::to_string(program.process()) + "/fd/" + std::to_string(static_cast<int>(descriptor));
    const std::string file = std::filesystem::read_symlink(link, none).string();
    return file.starts_with('/') ? file : "";
}

}  // namespace

std::optional<IoCall> AsIoCall(const support::TracedProgram& program, const support::SystemCall& call) {
    const auto* const known = std::ranges::find(kKnownCalls, call.number,
                                                [](const KnownCall& candidate) { return candidate.number; });
    if (known == std::end(kKnownCalls)) {
        return std::nullopt;
    }
    IoCall io = {KindOf(*known, call), call, known->name, ""};
    if (known->names == Names::kDescriptor) {
        const std::string file = FileOf(program, call.arguments[0]);
        if (file.empty()) {
            return std::nullopt;
        }
        io.description += " of " + file;
    } else {
        io.path = program.TextAt(call.arguments[known->names == Names::kPath ? 0 : 1]);
        // With an empty path, the call works on the descriptor.
        io.description += " of " + (io.path.empty() ? FileOf(program, call.arguments[0]) : io.path);
    }
    return io;
}

void FinishHalf(support::TracedProgram& program, const IoCall& call) {
    const auto& arguments = call.call.arguments;
    if (!IsVector(call.call)) {
        // At least one byte, because zero bytes mean the end of the file.
        program.FinishCallWith(2, (arguments[2] + 1) / 2);
        return;
    }
    // Shortens the last piece during the call and leaves the others unchanged.
    const std::uint64_t last_piece = arguments[1] + (arguments[2] - 1) * sizeof(iovec);
    iovec piece = {};
    const std::span bytes(reinterpret_cast<std::uint8_t*>(&piece), sizeof(piece));
    program.ReadMemory(last_piece, bytes);
    const auto length = piece.iov_len;
    piece.iov_len = (length + 1) / 2;
    program.WriteMemory(last_piece, bytes);
    program.FinishCall();
    piece.iov_len = length;
    program.WriteMemory(last_piece, bytes);
}

}  // namespace faults
