// SPDX-License-Identifier: MIT
#include "tests/support/program.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "tests/support/files.h"

namespace support {

namespace {

/// In the child: never returns.
[[noreturn]] void Execute(const std::string& program, const std::vector<std::string>& arguments,
                          const Start& start, const std::string& output, const std::string& errors) {
    std::vector<std::string> texts = {start.name.empty() ? program : start.name};
    texts.insert(texts.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    std::ranges::transform(texts, std::back_inserter(argv), [](std::string& text) { return text.data(); });
    argv.push_back(nullptr);

    constexpr mode_t mode = 0600;
    const int in = ::open("/dev/null", O_RDONLY);
    const int out = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, mode);
    const int err = ::open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, mode);
    ::dup2(in, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    for (const std::string& variable : start.variables) {
        const auto equals = variable.find('=');
        ::setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
    }
    if (start.largest_file != 0) {
        const struct rlimit limit = {start.largest_file, start.largest_file};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    constexpr int not_started = 127;
    if (!start.folder.empty() && ::chdir(start.folder.c_str()) != 0) {
        std::_Exit(not_started);
    }
    if (start.through_path) {
        ::execvp(program.c_str(), argv.data());
    } else {
        ::execv(program.c_str(), argv.data());
    }
    std::_Exit(not_started);
}

std::string ReadText(const std::string& path) {
    const auto bytes = ReadFile(path);
    return {bytes.begin(), bytes.end()};
}

}  // namespace

Outcome RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const Start& start) {
    const TempFolder folder;
    const std::string output = folder / "stdout";
    const std::string errors = folder / "stderr";
    const pid_t child = ::fork();
    if (child == 0) {
        Execute(program, arguments, start, output, errors);
    }
    int status = 0;
    struct rusage usage = {};
    ::wait4(child, &status, 0, &usage);
    constexpr int signalled = 128;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : signalled + WTERMSIG(status), ReadText(output),
            ReadText(errors), usage.ru_maxrss};
}

}  // namespace support
