// SPDX-License-Identifier: MIT
#if defined(__linux__)
#include <sys/vfs.h>
#else
#include <sys/mount.h>
#include <sys/param.h>
#endif
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "system/file_system.h"
#include "system/retry_on_interrupt.h"
#include "system/system_error.h"

namespace file_system {

#if defined(__linux__)

namespace {

/// Types as in statfs(2): vfat and msdos, exFAT, NTFS with its two drivers, HFS and HFS+, UDF, and all of
/// FUSE.
constexpr auto kLosingTypes = std::to_array<std::uint32_t>(
    {0x4D44, 0x2011BAB0, 0x5346544E, 0x7366746E, 0x4244, 0x482B, 0x15013346, 0x65735546});

}  // namespace

bool LosesReplacedFiles(const std::string& path) {
    struct statfs volume = {};
    return RetryOnInterrupt([&] { return ::statfs(path.c_str(), &volume); }) == 0 &&
           std::ranges::find(kLosingTypes, static_cast<std::uint32_t>(volume.f_type)) != kLosingTypes.end();
}

/// Some file systems write everything on syncfs but do not empty the disk's cache; fsync of a file does that.
std::error_code SynchronizeVolume(const Handle& file) {
    const bool written = RetryOnInterrupt([&] { return ::syncfs(file.Get()); }) == 0;
    return written ? Synchronize(file) : system_error::Last();
}

#else

bool LosesReplacedFiles(const std::string& path) {
    constexpr auto losing = std::to_array<std::string_view>({"msdos", "msdosfs", "exfat", "ntfs", "udf"});
    struct statfs volume = {};
    return RetryOnInterrupt([&] { return ::statfs(path.c_str(), &volume); }) == 0 &&
           std::ranges::find(losing, std::string_view(volume.f_fstypename)) != losing.end();
}

std::error_code SynchronizeVolume(const Handle& file) {
    ::sync();
    return Synchronize(file);
}

#endif

std::error_code Hold(const std::string& path, Handle& file) {
    constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    file = Handle(RetryOnInterrupt([&] { return ::open(path.c_str(), flags); }));
    return file.IsOpen() ? std::error_code() : system_error::Last();
}

}  // namespace file_system
