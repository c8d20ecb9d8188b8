// SPDX-License-Identifier: MIT
#include "system/running_process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>

#include <gtest/gtest.h>

namespace {

TEST(RunningProcess, OneThatHasEndedIsGoneEvenIfNobodyHasNoticed) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(0);
    }
    ASSERT_GT(child, 0);
    siginfo_t end = {};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(child), &end, WEXITED | WNOWAIT), 0);
    EXPECT_TRUE(running_process::IsGone(static_cast<std::uint64_t>(child)));
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_TRUE(running_process::IsGone(static_cast<std::uint64_t>(child)));
}

TEST(RunningProcess, OneThatRunsIsNotGone) {
    EXPECT_FALSE(running_process::IsGone(running_process::Number()));
    EXPECT_FALSE(running_process::IsGone(static_cast<std::uint64_t>(::getppid())));
}

TEST(RunningProcess, NumbersThatStandForSeveralProcessesAreNotGone) {
    EXPECT_FALSE(running_process::IsGone(0));
    EXPECT_FALSE(running_process::IsGone(UINT64_MAX));
}

}  // namespace
