// SPDX-License-Identifier: MIT
#include <poll.h>
#include <sys/syscall.h>
#include <sys/utsname.h>
#include <unistd.h>

#if defined(__APPLE__)
#include <sys/random.h>
#endif

#include <cerrno>
#include <csignal>
#include <ctime>
#include <limits>

#include "system/handle.h"
#include "system/running_process.h"

namespace running_process {

namespace {

/// Whether the process has ended and its parent has not asked for its status yet: kill still finds it.
bool IsZombie([[maybe_unused]] pid_t process) {
#if defined(SYS_pidfd_open)
    const Handle descriptor(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    pollfd end = {descriptor.Get(), POLLIN, 0};
    return descriptor.IsOpen() && ::poll(&end, 1, 0) == 1 && (end.revents & POLLIN) != 0;
#else
    return false;
#endif
}

}  // namespace

std::string HostName() {
    utsname system = {};
    return ::uname(&system) == 0 ? std::string(system.nodename) : std::string();
}

std::uint64_t Number() {
    return static_cast<std::uint64_t>(::getpid());
}

bool IsGone(std::uint64_t number) {
    constexpr auto highest = static_cast<std::uint64_t>(std::numeric_limits<pid_t>::max());
    if (number == 0 || number > highest) {
        return false;  // for kill(2), these do not stand for a single process
    }
    const auto process = static_cast<pid_t>(number);
    return (::kill(process, 0) != 0 && errno == ESRCH) || IsZombie(process);
}

std::uint64_t RandomNumber() {
    std::uint64_t number = 0;
    if (::getentropy(&number, sizeof(number)) != 0) {
        timespec now = {};
        ::clock_gettime(CLOCK_REALTIME, &now);
        constexpr std::uint64_t second = 1'000'000'000;  // ns
        number = static_cast<std::uint64_t>(now.tv_sec) * second + static_cast<std::uint64_t>(now.tv_nsec);
    }
    return number;
}

}  // namespace running_process
