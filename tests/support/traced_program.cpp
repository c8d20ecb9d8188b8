// SPDX-License-Identifier: MIT
#include "tests/support/traced_program.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/support/system_call_registers.h"

namespace support {

namespace {

/// The signal that waitpid reports for a stop at a system call.
constexpr int kCallStop = SIGTRAP | 0x80;

bool StoppedAtCall(int status) {
    return WIFSTOPPED(status) && WSTOPSIG(status) == kCallStop;
}

class Descriptor {
  public:
    Descriptor(pid_t process, int flags)
        : descriptor_(::open(("/proc/" + std::to_string(process) + "/mem").c_str(), flags | O_CLOEXEC)) {}
    ~Descriptor() { ::close(descriptor_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor(Descriptor&&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;
    int get() const { return descriptor_; }

  private:
    int descriptor_;
};

Start Traced(Start start) {
    start.traced = true;
    // Leaks can't be detected in a traced program; other findings of a sanitizer have a distinct exit status.
    start.variables.emplace_back("ASAN_OPTIONS=detect_leaks=0:exitcode=99");
    start.variables.emplace_back("UBSAN_OPTIONS=exitcode=99");
    return start;
}

}  // namespace

std::string TracedProgram::Obstacle() {
    TracedProgram program("/bin/true", {});
    if (!program.NextCall()) {
        return "this system does not allow tracing";
    }
    return registers::SetArgument(program.process_, 0, 0) ? ""
                                                          : "the registers of this machine are not supported";
}

TracedProgram::TracedProgram(const std::string& program, const std::vector<std::string>& arguments,
                             const Start& start)
    : process_(StartProgram(program, arguments, Traced(start), {logs_ / "stdout", logs_ / "stderr"})) {
    WaitForStop();
    if (process_ != 0) {
        ::ptrace(PTRACE_SETOPTIONS, process_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    }
}

TracedProgram::~TracedProgram() {
    Kill();
}

void TracedProgram::WaitForStop() {
    while (::waitpid(process_, &status_, 0) < 0 && errno == EINTR) {
    }
    if (!WIFSTOPPED(status_)) {
        process_ = 0;
    }
}

/// Continues, passing on the signal that the program was stopped for.
void TracedProgram::Resume(int request) {
    const int signal = WSTOPSIG(status_);
    const bool its_own = signal != kCallStop && signal != SIGTRAP;
    ::ptrace(static_cast<__ptrace_request>(request), process_, nullptr, its_own ? signal : 0);
}

/// Continues to the entry or the exit of a call; false if the program ended.
bool TracedProgram::AtCall() {
    while (process_ != 0) {
        Resume(PTRACE_SYSCALL);
        WaitForStop();
        if (StoppedAtCall(status_)) {
            return process_ != 0;
        }
    }
    return false;
}

std::optional<SystemCall> TracedProgram::NextCall() {
    while (AtCall()) {
        __ptrace_syscall_info info = {};
        if (::ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof(info), &info) <= 0) {
            break;
        }
        if (info.op == PTRACE_SYSCALL_INFO_ENTRY) {
            SystemCall call = {info.entry.nr, {}};
            std::copy_n(&info.entry.args[0], call.arguments.size(), call.arguments.begin());
            return call;
        }
    }
    return std::nullopt;
}

bool TracedProgram::FinishCall() {
    return AtCall();
}

void TracedProgram::FailCall(int error) {
    ASSERT_TRUE(registers::SkipCall(process_));
    FailFinishedCall(error);
}

void TracedProgram::FailFinishedCall(int error) {
    if (FinishCall()) {
        ASSERT_TRUE(registers::SetResult(process_, -error));
    }
}

void TracedProgram::FinishCallWith(std::size_t index, std::uint64_t value) {
    ASSERT_TRUE(registers::SetArgument(process_, index, value));
    FinishCall();
}

void TracedProgram::Finish() {
    while (process_ != 0) {
        Resume(PTRACE_CONT);
        WaitForStop();
    }
}

void TracedProgram::Kill() {
    if (process_ != 0) {
        ::kill(process_, SIGKILL);
    }
    while (process_ != 0) {  // if it has just stopped for another reason, it stops again
        WaitForStop();
    }
}

Outcome TracedProgram::outcome() const {
    return {ExitStatus(status_), ReadText(logs_ / "stdout"), ReadText(logs_ / "stderr")};
}

bool TracedProgram::ReadMemory(std::uint64_t address, std::span<std::uint8_t> bytes) const {
    const Descriptor memory(process_, O_RDONLY);
    return ::pread(memory.get(), bytes.data(), bytes.size(), static_cast<off_t>(address)) ==
           static_cast<ssize_t>(bytes.size());
}

bool TracedProgram::WriteMemory(std::uint64_t address, std::span<const std::uint8_t> bytes) const {
    const Descriptor memory(process_, O_WRONLY);
    return ::pwrite(memory.get(), bytes.data(), bytes.size(), static_cast<off_t>(address)) ==
           static_cast<ssize_t>(bytes.size());
}

std::string TracedProgram::TextAt(std::uint64_t address) const {
    const Descriptor memory(process_, O_RDONLY);
    std::array<char, 4096> text = {};
    const auto read = ::pread(memory.get(), text.data(), text.size(), static_cast<off_t>(address));
    return read > 0 ? std::string(text.data(), ::strnlen(text.data(), static_cast<std::size_t>(read))) : "";
}

}  // namespace support
