// SPDX-License-Identifier: MIT
#include "tests/powercut/file_system.h"

#include <sys/mount.h>

#include <filesystem>

#include "tests/powercut/block_device.h"
#include "tests/powercut/must.h"
#include "tests/support/program.h"

namespace powercut {

const std::vector<FileSystem>& FileSystems() {
    constexpr std::uint64_t megabyte = 1ULL << 20U;
    static const std::vector<FileSystem> all = {
        {"vfat", "vfat", "", {"/sbin/mkfs.vfat", "-F", "32"}, {"/sbin/fsck.vfat", "-a"}, 128 * megabyte},
        // The options with which desktops mount a card.
        {"vfat-flush",
         "vfat",
         "flush",
         {"/sbin/mkfs.vfat", "-F", "32"},
         {"/sbin/fsck.vfat", "-a"},
         128 * megabyte},
        {"exfat", "exfat", "", {"/sbin/mkfs.exfat"}, {"/sbin/fsck.exfat", "-y"}, 128 * megabyte},
        {"ext4", "ext4", "", {"/sbin/mkfs.ext4", "-q"}, {}, 128 * megabyte},
        {"xfs", "xfs", "", {"/sbin/mkfs.xfs", "-q"}, {}, 320 * megabyte},
        {"btrfs", "btrfs", "", {"/sbin/mkfs.btrfs", "-q"}, {}, 256 * megabyte},
    };
    return all;
}

int RunOnDevice(const std::vector<std::string>& command) {
    std::vector<std::string> arguments(command.begin() + 1, command.end());
    arguments.push_back(BlockDevice::Path());
    return support::RunProgram(command.front(), arguments).status;
}

Mount::Mount(const FileSystem& file_system) {
    std::filesystem::create_directories(kDisk);
    mounted_ = ::mount(BlockDevice::Path().c_str(), kDisk.c_str(), file_system.type.c_str(), 0,
                       file_system.options.c_str()) == 0;
}

Mount::~Mount() {
    if (mounted_) {
        Must(::umount2(kDisk.c_str(), 0) == 0, "umount");
    }
}

}  // namespace powercut
