// SPDX-License-Identifier: MIT
#include "tests/end_to_end/killed_program.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <thread>

#include <gtest/gtest.h>

namespace end_to_end {

namespace {

/// Starts the program; a traced one stops at its first instruction.
pid_t Start(const KilledProgram& killed, bool traced) {
    std::vector<std::string> texts = killed.arguments;
    texts.insert(texts.begin(), killed.program);
    std::vector<char*> argv;
    std::ranges::transform(texts, std::back_inserter(argv), [](std::string& text) { return text.data(); });
    argv.push_back(nullptr);
    const pid_t child = ::fork();
    if (child != 0) {
        return child;
    }
    const int null = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(null, STDOUT_FILENO);
    ::dup2(null, STDERR_FILENO);
    ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);  // which cannot be done in a traced program
    if (::chdir(killed.folder.c_str()) == 0 &&
        (!traced || ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0)) {
        ::execv(killed.program.c_str(), argv.data());
    }
    std::_Exit(1);
}

/// Whether a status of waitpid tells of a kill.
bool WasKilled(int status) {
    const bool killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    EXPECT_TRUE(killed || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) << status;
    return killed;
}

bool Kill(pid_t child) {
    int status = 0;
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return WasKilled(status);
}

}  // namespace

bool KilledProgram::RunUntilSystemCall(int stop) const {
    const pid_t child = Start(*this, true);
    int status = 0;
    ::waitpid(child, &status, 0);
    for (int i = 0; i < stop && WIFSTOPPED(status); ++i) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        ::waitpid(child, &status, 0);
    }
    return WIFSTOPPED(status) ? Kill(child) : WasKilled(status);
}

bool KilledProgram::RunFor(std::chrono::microseconds delay) const {
    const pid_t child = Start(*this, false);
    std::this_thread::sleep_for(delay);
    return Kill(child);
}

}  // namespace end_to_end
