// SPDX-License-Identifier: MIT
#include "tests/matrix/child.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <utility>

namespace matrix {

namespace {

/// The argument vector for execve. Valid as long as `texts`.
std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    std::ranges::transform(texts, std::back_inserter(pointers),
                           [](std::string& text) { return text.data(); });
    pointers.push_back(nullptr);
    return pointers;
}

/// The environment of this process, plus variables that make the sanitizers strict and save memory.
std::vector<std::string> Environment() {
    std::vector<std::string> variables;
    for (char** variable = ::environ; *variable != nullptr; ++variable) {
        const std::string text = *variable;
        if (!text.starts_with("ASAN_OPTIONS=") && !text.starts_with("UBSAN_OPTIONS=")) {
            variables.push_back(text);
        }
    }
    variables.emplace_back("ASAN_OPTIONS=exitcode=99:quarantine_size_mb=4:max_allocation_size_mb=96");
    variables.emplace_back("UBSAN_OPTIONS=exitcode=99:print_stacktrace=1");
    return variables;
}

void LimitCpu() {
    constexpr rlim_t seconds = 10;
    const struct rlimit limit = {seconds, seconds};
    ::setrlimit(RLIMIT_CPU, &limit);
}

/// Everything that a run needs, prepared before the fork: the child must not allocate, because other threads
/// may hold the allocator's locks.
struct Launch {
    const char* program;
    const char* folder;
    const char* output;
    const char* errors;
    char** arguments;
    char** variables;
};

[[noreturn]] void Execute(const Launch& launch) {
    constexpr unsigned int longest = 120;  // seconds
    constexpr mode_t mode = 0600;
    constexpr int not_started = 127;
    constexpr int new_file = O_WRONLY | O_CREAT | O_TRUNC;
    ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
    ::dup2(::open(launch.output, new_file, mode), STDOUT_FILENO);
    ::dup2(::open(launch.errors, new_file, mode), STDERR_FILENO);
    LimitCpu();
    ::alarm(longest);
    if (::chdir(launch.folder) == 0) {
        ::execve(launch.program, launch.arguments, launch.variables);
    }
    std::_Exit(not_started);
}

std::string ReadText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

double Seconds(const timeval& time) {
    constexpr double microsecond = 1e-6;
    return static_cast<double>(time.tv_sec) + microsecond * static_cast<double>(time.tv_usec);
}

}  // namespace

Child::Child(std::string program, std::string folder)
    : program_(std::move(program)),
      folder_(std::move(folder)),
      output_(folder_ + ".stdout"),
      errors_(folder_ + ".stderr"),
      variables_(Environment()) {}

Ending Child::Run(const std::vector<std::string>& arguments) const {
    std::vector<std::string> texts = {"bin/velmarcon"};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    auto argv = Pointers(texts);
    auto variables = variables_;
    auto envp = Pointers(variables);
    const Launch launch = {program_.c_str(), folder_.c_str(), output_.c_str(),
                           errors_.c_str(),  argv.data(),     envp.data()};
    const pid_t child = ::fork();
    if (child == 0) {
        Execute(launch);
    }
    Ending ending;
    int status = 0;
    struct rusage usage = {};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child) {
        ending.errors = "the program could not be started";
        return ending;
    }
    ending.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    ending.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    ending.cpu_seconds = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
    ending.peak_kilobytes = usage.ru_maxrss;
    ending.output = ReadText(output_);
    ending.errors = ReadText(errors_);
    return ending;
}

}  // namespace matrix
