// SPDX-License-Identifier: MIT
#include "bench/timed_run.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>

namespace {

[[noreturn]] void Execute(std::vector<std::string> command) {
    std::vector<char*> argv;
    std::ranges::transform(command, std::back_inserter(argv), [](std::string& text) { return text.data(); });
    argv.push_back(nullptr);
    ::dup2(::open("/dev/null", O_WRONLY), STDOUT_FILENO);
    ::execvp(argv.front(), argv.data());
    constexpr int not_started = 127;
    std::_Exit(not_started);
}

double Seconds(const timeval& time) {
    constexpr double microseconds = 1e6;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / microseconds;
}

}  // namespace

RunCost TimedRun(const std::vector<std::string>& command) {
    const auto begin = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0) {
        Execute(command);
    }
    int status = 0;
    struct rusage usage = {};
    ::wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - begin;
    return {WIFEXITED(status) && WEXITSTATUS(status) == 0, wall.count(),
            Seconds(usage.ru_utime) + Seconds(usage.ru_stime), usage.ru_maxrss, usage.ru_minflt};
}
