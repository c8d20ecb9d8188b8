// SPDX-License-Identifier: MIT
#include "system/retry_on_interrupt.h"

#include <cerrno>
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

namespace {

/// The result of RetryOnInterrupt for a call that fails with each of `errors` in turn and then returns 5.
int Result(const std::vector<int>& errors) {
    std::size_t calls = 0;
    return RetryOnInterrupt([&] {
        if (calls == errors.size()) {
            return 5;
        }
        errno = errors[calls++];
        return -1;
    });
}

TEST(InterruptedCall, IsRepeatedUntilItIsNotInterrupted) {
    EXPECT_EQ(Result({}), 5);
    EXPECT_EQ(Result({EINTR}), 5);
    EXPECT_EQ(Result(std::vector<int>(50, EINTR)), 5);
}

TEST(InterruptedCall, OtherFailuresAreFinal) {
    for (const int error : {EIO, EAGAIN, ENOENT}) {
        EXPECT_EQ(Result({error}), -1);
        EXPECT_EQ(errno, error);
        EXPECT_EQ(Result({EINTR, error}), -1);
        EXPECT_EQ(errno, error);
    }
}

TEST(InterruptedCall, AResultIsFinalWhateverErrnoIs) {
    errno = EINTR;
    EXPECT_EQ(RetryOnInterrupt([] { return 0; }), 0);
}

}  // namespace
