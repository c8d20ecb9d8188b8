// SPDX-License-Identifier: MIT
#include "tests/file_systems/faulty_mount.h"

#include <fcntl.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "tests/support/program.h"

namespace file_systems {

namespace {

constexpr auto kFuse = 0x65735546;

bool IsMounted(const std::string& folder) {
    struct statfs volume = {};
    return ::statfs(folder.c_str(), &volume) == 0 && volume.f_type == kFuse;
}

/// Why FUSE file systems cannot be mounted; empty if they may work.
std::string WhyNoFuse() {
    const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    ::close(device);
    return device >= 0 ? "" : "/dev/fuse can't be opened";
}

}  // namespace

FaultyMount::FaultyMount(std::string_view fault, const std::string& source, const std::string& mount_point)
    : obstacle_(WhyNoFuse()) {
    if (obstacle_.empty()) {
        server_ = support::StartProgram(FAULTY_FOLDER, {std::string(fault), source, mount_point}, {},
                                        {logs_ / "output", logs_ / "errors"});
        obstacle_ = Obstacle(mount_point);
    }
}

/// Waits until the file system is mounted or has failed.
std::string FaultyMount::Obstacle(const std::string& mount_point) const {
    while (!IsMounted(mount_point)) {
        siginfo_t ended = {};
        if (::waitid(P_PID, static_cast<id_t>(server_), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 ||
            ended.si_pid != 0) {
            return "no FUSE: " + support::ReadText(logs_ / "errors");
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return "";
}

FaultyMount::~FaultyMount() {
    if (server_ > 0) {
        ::kill(server_, SIGTERM);  // faulty_folder unmounts before it ends
        ::waitpid(server_, nullptr, 0);
    }
}

}  // namespace file_systems
