// SPDX-License-Identifier: MIT
#include "errors/not_written.h"

#include <gtest/gtest.h>

#include "tests/support/capture_stdout.h"

namespace {

TEST(NotWritten, NamesFileAndReason) {
    EXPECT_EQ(support::CaptureStdout(
                  [] { PrintNotWritten("out/L1.DNG", output_names::kDng, "No space left on device"); }),
              "out/L1.DNG: DNG not written: No space left on device\n");
}

}  // namespace
