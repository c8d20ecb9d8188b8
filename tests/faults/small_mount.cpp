// SPDX-License-Identifier: MIT
#include "tests/faults/small_mount.h"

#include <sched.h>
#include <sys/mount.h>

#include <utility>

namespace faults {

SmallMount::SmallMount(std::string folder, const std::string& size)
    : folder_(std::move(folder)), options_("size=" + size) {
    mounted_ = ::unshare(CLONE_NEWNS) == 0 &&
               ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               ::mount("none", folder_.c_str(), "tmpfs", 0, options_.c_str()) == 0;
}

SmallMount::~SmallMount() {
    if (mounted_) {
        ::umount2(folder_.c_str(), MNT_DETACH);
    }
}

bool SmallMount::MakeReadOnly() const {
    return ::mount("none", folder_.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, options_.c_str()) == 0;
}

bool SmallMount::MakeWritable() const {
    return ::mount("none", folder_.c_str(), "tmpfs", MS_REMOUNT, options_.c_str()) == 0;
}

}  // namespace faults
