// SPDX-License-Identifier: MIT
#include "tests/support/capture_stdout.h"

#include <gtest/gtest.h>

namespace support {

std::string CaptureStdout(const std::function<void()>& action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}

}  // namespace support
