// SPDX-License-Identifier: MIT
// Loaded into velmarcon-batch by its tests: as many DNGs as there are tickets get their names, and whoever
// would give a name to the next one waits until the gate is open. So does whoever opens a file whose path
// ends as GATE_HOLDS says.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <ctime>
#include <string>
#include <string_view>

namespace {

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Of the file that counts the tickets that were taken. It is opened at once: the sandbox lets nobody do so
/// later.
const int counter = ::open((Variable("GATE_FOLDER") + "/tickets").c_str(), O_RDWR | O_CLOEXEC);

bool TakeTicket() {
    unsigned char taken = 0;
    (void)::flock(counter, LOCK_EX);
    [[maybe_unused]] const auto read = ::pread(counter, &taken, 1, 0);
    const bool is_left = taken < std::strtol(Variable("GATE_TICKETS").c_str(), nullptr, 10);
    if (is_left) {
        ++taken;
        [[maybe_unused]] const auto counted = ::pwrite(counter, &taken, 1, 0);
    }
    (void)::flock(counter, LOCK_UN);
    return is_left;
}

void WaitUntilOpen() {
    constexpr timespec nap = {.tv_sec = 0, .tv_nsec = 50'000'000};
    const std::string open = Variable("GATE_FOLDER") + "/open";
    while (::access(open.c_str(), F_OK) != 0) {
        (void)::nanosleep(&nap, nullptr);
    }
}

void WaitFor(std::string_view name) {
    if (const std::string killing = Variable("GATE_KILLS"); !killing.empty() && name.ends_with(killing)) {
        (void)std::raise(SIGKILL);
    }
    if (!name.ends_with(".DNG") || TakeTicket()) {
        return;
    }
    WaitUntilOpen();
}

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the names of the C library are reserved
extern "C" int renameat2(int from_folder, const char* from, int to_folder, const char* to,
                         unsigned int flags) {
    WaitFor(to);
    return Next<int(int, const char*, int, const char*, unsigned int)>("renameat2")(from_folder, from,
                                                                                    to_folder, to, flags);
}

/// A disk that does not take what was written.
extern "C" int syncfs(int descriptor) noexcept {
    if (!Variable("GATE_FAILS_SYNC").empty()) {
        errno = EIO;
        return -1;
    }
    return Next<int(int)>("syncfs")(descriptor);
}

extern "C" int rename(const char* from, const char* to) noexcept {
    WaitFor(to);
    return Next<int(const char*, const char*)>("rename")(from, to);
}
/// As the programs call it, whose files may be longer than 2 GB.
extern "C" int open64(const char* path, int flags, ...) {
    if (const std::string held = Variable("GATE_HOLDS");
        !held.empty() && std::string_view(path).ends_with(held)) {
        WaitUntilOpen();
    }
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = va_arg(arguments, unsigned int);
    va_end(arguments);
    return Next<int(const char*, int, ...)>("open64")(path, flags, mode);
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
