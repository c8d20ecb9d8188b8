// SPDX-License-Identifier: MIT
#include "tests/end_to_end/killed_program.h"

#include <sys/wait.h>

#include <csignal>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/program.h"
#include "tests/support/traced_program.h"

namespace end_to_end {

namespace {

/// Whether the exit status means that the program was killed.
bool WasKilled(int status) {
    constexpr int killed = 128 + SIGKILL;
    EXPECT_TRUE(status == killed || status == 0) << status;
    return status == killed;
}

}  // namespace

bool KilledProgram::RunUntilSystemCall(int stop) const {
    support::TracedProgram traced(program, arguments, {.folder = folder});
    bool runs = true;
    for (int i = 0; i < stop && runs; ++i) {
        runs = i % 2 == 0 ? traced.NextCall().has_value() : traced.FinishCall();
    }
    traced.Kill();
    return WasKilled(traced.outcome().status);
}

bool KilledProgram::RunFor(std::chrono::microseconds delay) const {
    const support::TempFolder logs;
    const pid_t child =
        support::StartProgram(program, arguments, {.folder = folder}, {logs / "stdout", logs / "stderr"});
    std::this_thread::sleep_for(delay);
    int status = 0;
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return WasKilled(support::ExitStatus(status));
}

}  // namespace end_to_end
