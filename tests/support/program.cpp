// SPDX-License-Identifier: MIT
#include "tests/support/program.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>

#include "tests/support/files.h"

namespace support {

namespace {

void TakePlace(int descriptor, int of) {
    if (descriptor != of) {
        ::dup2(descriptor, of);
        ::close(descriptor);
    }
}

void RedirectOutput(StandardOutput output) {
    switch (output) {
        case StandardOutput::kRead:
            return;
        case StandardOutput::kClosed:
            ::close(STDOUT_FILENO);
            return;
        case StandardOutput::kAllClosed:
            for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
                ::close(stream);
            }
            return;
        case StandardOutput::kFull:
            TakePlace(::open("/dev/full", O_WRONLY), STDOUT_FILENO);
            return;
        case StandardOutput::kDeserted:
            std::array<int, 2> ends = {};
            if (::pipe(ends.data()) == 0) {
                ::close(ends[0]);
                TakePlace(ends[1], STDOUT_FILENO);
                (void)std::signal(SIGPIPE, SIG_DFL);  // regardless of how this process handles it
            }
            return;
    }
}

template <typename Resource>
void Limit(Resource resource, std::uint64_t bytes) {
    if (bytes != 0) {
        const struct rlimit limit = {bytes, bytes};
        ::setrlimit(resource, &limit);
    }
}

/// Runs in the child and never returns.
[[noreturn]] void Execute(const std::string& program, const std::vector<std::string>& arguments,
                          const Start& start, const Logs& logs) {
    std::vector<std::string> texts = {start.name.empty() ? program : start.name};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    std::ranges::transform(texts, std::back_inserter(argv), [](std::string& text) { return text.data(); });
    argv.push_back(nullptr);

    constexpr mode_t mode = 0600;
    const int in = ::open("/dev/null", O_RDONLY);
    const int out = ::open(logs.output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, mode);
    const int err = ::open(logs.errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, mode);
    TakePlace(in, STDIN_FILENO);
    TakePlace(out, STDOUT_FILENO);
    TakePlace(err, STDERR_FILENO);
    RedirectOutput(start.output);
    constexpr unsigned int watchdog = 240;  // seconds
    ::alarm(watchdog);
    for (const std::string& variable : start.variables) {
        const auto equals = variable.find('=');
        ::setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
    }
    Limit(RLIMIT_FSIZE, start.largest_file);
    Limit(RLIMIT_AS, start.address_space);
    constexpr int not_started = 127;
    if (!start.folder.empty() && ::chdir(start.folder.c_str()) != 0) {
        std::_Exit(not_started);
    }
    if (start.traced && ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
        std::_Exit(not_started);
    }
    if (start.through_path) {
        ::execvp(program.c_str(), argv.data());
    } else {
        ::execv(program.c_str(), argv.data());
    }
    std::_Exit(not_started);
}

}  // namespace

pid_t StartProgram(const std::string& program, const std::vector<std::string>& arguments, const Start& start,
                   const Logs& logs) {
    const pid_t child = ::fork();
    if (child == 0) {
        Execute(program, arguments, start, logs);
    }
    return child;
}

int ExitStatus(int status) {
    constexpr int signalled = 128;
    return WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status);
}

Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const Start& start) {
    const TempFolder folder;
    const Logs logs = {folder / "stdout", folder / "stderr"};
    const pid_t child = StartProgram(program, arguments, start, logs);
    int status = 0;
    struct rusage usage = {};
    ::wait4(child, &status, 0, &usage);
    return {ExitStatus(status), ReadText(logs.output), ReadText(logs.errors), usage.ru_maxrss};
}

}  // namespace support
