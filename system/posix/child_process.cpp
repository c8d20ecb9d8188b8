// SPDX-License-Identifier: MIT
#include "system/child_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>

#include "system/file_system.h"
#include "system/retry_on_interrupt.h"
#include "system/system_error.h"

namespace {

constexpr int kNotStarted = 127;

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// Returns whether `stream` is what it is to be.
bool Redirect(int stream, const std::string& file) {
    if (file.empty()) {
        return true;
    }
    constexpr mode_t owners = 0600;
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW, owners);
    return descriptor >= 0 && ::dup2(descriptor, stream) >= 0 && ::close(descriptor) == 0;
}

bool TakeInputFromNothing() {
    const int nothing = ::open("/dev/null", O_RDONLY);
    return nothing >= 0 && ::dup2(nothing, STDIN_FILENO) >= 0;
}

/// In the child: signals and streams as a program expects them.
bool Prepare(const ChildStart& start) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGXFSZ, SIGPIPE}) {
        (void)std::signal(signal, SIG_DFL);
    }
    for (const auto& [name, value] : start.environment) {
        (void)::setenv(name.c_str(), value.c_str(), 1);
    }
    for (const std::string& name : start.unset) {
        (void)::unsetenv(name.c_str());
    }
    for (const int descriptor : start.kept) {
        (void)::fcntl(descriptor, F_SETFD, 0);
    }
    return TakeInputFromNothing() && Redirect(STDOUT_FILENO, start.output) &&
           Redirect(STDERR_FILENO, start.errors) &&
           (start.folder.empty() || ::chdir(start.folder.c_str()) == 0);
}

/// In the child: becomes the program, or writes the error number to `report`.
[[noreturn]] void Become(const ChildStart& start, char* const* arguments, int report) {
    if (Prepare(start)) {
        ::execvp(arguments[0], arguments);
    }
    const int error = system_error::Last().value();
    [[maybe_unused]] const auto told = ::write(report, &error, sizeof(error));
    ::_exit(kNotStarted);
}

int StatusFrom(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : ChildProcess::kKilled + WTERMSIG(status);
}

/// A program on the search path is looked up here: the child's folder is another one.
ChildStart WithWholePath(ChildStart start) {
    if (start.arguments.front().find('/') == std::string::npos) {
        if (const std::string path = FindOnSearchPath(start.arguments.front()); !path.empty()) {
            start.arguments.front() = path;
        }
    }
    return start;
}

}  // namespace

ChildProcess::~ChildProcess() {
    constexpr unsigned int a_while = 1000;
    while (process_ >= 0 && !WaitFor(a_while)) {
    }
}

std::error_code ChildProcess::Start(const ChildStart& start) {
    const ChildStart whole = WithWholePath(start);
    std::vector<std::string> texts = whole.arguments;
    const std::vector<char*> arguments = Pointers(texts);
    std::array<int, 2> report = {};
    if (::pipe2(report.data(), O_CLOEXEC) != 0) {
        return system_error::Last();
    }
    const pid_t child = ::fork();
    int error = child < 0 ? system_error::Last().value() : 0;
    if (child == 0) {
        Become(whole, arguments.data(), report[1]);
    }
    ::close(report[1]);
    if (error == 0) {
        process_ = child;
        const auto length = RetryOnInterrupt([&] { return ::read(report[0], &error, sizeof(error)); });
        error = length == sizeof(error) ? error : 0;
    }
    ::close(report[0]);
    return {error, std::generic_category()};
}

std::optional<int> ChildProcess::Status() {
    if (process_ >= 0 && !status_) {
        int status = 0;
        const auto number = static_cast<pid_t>(process_);
        const pid_t ended = RetryOnInterrupt([&] { return ::waitpid(number, &status, WNOHANG); });
        if (ended != 0) {
            status_ = ended == number ? StatusFrom(status) : kNotStarted;
            process_ = -1;
        }
    }
    return status_;
}

std::optional<int> ChildProcess::WaitFor(unsigned int milliseconds) {
    constexpr unsigned int step = 5;
    constexpr timespec nap = {.tv_sec = 0, .tv_nsec = 5'000'000};
    for (unsigned int waited = 0; waited < milliseconds && !Status(); waited += step) {
        if (::nanosleep(&nap, nullptr) != 0) {
            break;
        }
    }
    return Status();
}

void ChildProcess::AskToEnd() const {
    if (process_ >= 0) {
        (void)::kill(static_cast<pid_t>(process_), SIGTERM);
    }
}

std::optional<int> RunForOutput(const ChildStart& start, std::string& printed) {
    const ChildStart whole = WithWholePath(start);
    std::vector<std::string> texts = whole.arguments;
    const std::vector<char*> arguments = Pointers(texts);
    std::array<int, 2> pipe = {};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        if (::dup2(pipe[1], STDOUT_FILENO) < 0 || ::dup2(pipe[1], STDERR_FILENO) < 0) {
            ::_exit(kNotStarted);
        }
        Become(whole, arguments.data(), STDERR_FILENO);
    }
    ::close(pipe[1]);
    std::array<char, 4096> bytes = {};
    for (;;) {
        const auto length = RetryOnInterrupt([&] { return ::read(pipe[0], bytes.data(), bytes.size()); });
        if (length <= 0) {
            break;
        }
        printed.append(bytes.data(), static_cast<std::size_t>(length));
    }
    ::close(pipe[0]);
    int status = 0;
    if (child < 0 || RetryOnInterrupt([&] { return ::waitpid(child, &status, 0); }) != child) {
        return std::nullopt;
    }
    return StatusFrom(status);
}

std::string FindOnSearchPath(const std::string& name) {
    const char* path = std::getenv("PATH");  // NOLINT(concurrency-mt-unsafe): there is one thread
    std::string folders = path != nullptr ? path : "/usr/bin:/bin";
    folders += ':';
    for (std::size_t begin = 0; begin < folders.size();) {
        const std::size_t end = folders.find(':', begin);
        const std::string folder = end == begin ? "." : folders.substr(begin, end - begin);
        std::string file = folder;
        file.append("/").append(name);
        auto kind = file_system::Kind::kNothing;
        if (::access(file.c_str(), X_OK) == 0 && !file_system::KindOf(file, kind) &&
            kind != file_system::Kind::kFolder) {
            return file;
        }
        begin = end + 1;
    }
    return "";
}
