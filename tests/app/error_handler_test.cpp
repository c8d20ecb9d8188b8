// SPDX-License-Identifier: MIT
#include "app/error_handler.h"

#include <gtest/gtest.h>

#include "app/error_codes.h"
#include "tests/support/capture_stdout.h"

namespace {

TEST(ErrorHandler, PrintsCodeWithFourDigitsAndReturnsIt) {
    const ErrorHandler errors;
    int status = 0;
    EXPECT_EQ(support::CaptureStdout([&] { status = errors.PrintError(kNoRawFiles); }),
              "Error #0005: No RAW files found in folder.\n");
    EXPECT_EQ(status, 5);
}

}  // namespace
