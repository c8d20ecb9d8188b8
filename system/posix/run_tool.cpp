// SPDX-License-Identifier: MIT
#include "system/run_tool.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "system/retry_on_interrupt.h"

bool RunTool(const std::string& folder, const std::string& name, const std::vector<std::string>& arguments) {
    constexpr int not_started = 127;
    std::vector<std::string> texts = arguments;
    texts.insert(texts.begin(), name);
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        const int nothing = ::open("/dev/null", O_RDWR);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            (void)::dup2(nothing, stream);
        }
        if (::chdir(folder.c_str()) == 0) {
            ::execvp(pointers[0], pointers.data());
        }
        ::_exit(not_started);
    }
    int status = 0;
    if (child < 0 || RetryOnInterrupt([&] { return ::waitpid(child, &status, 0); }) != child) {
        return false;
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}
