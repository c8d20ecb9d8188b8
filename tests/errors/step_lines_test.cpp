// SPDX-License-Identifier: MIT
#include "errors/step_lines.h"

#include <gtest/gtest.h>

#include "tests/support/capture_stdout.h"

namespace {

using support::CaptureStdout;

TEST(StepLines, NameTheStepBeforeItAndEndAfterIt) {
    EXPECT_EQ(CaptureStdout([] { step_lines::Begin(true, "Fixing"); }), "Fixing...");
    EXPECT_EQ(CaptureStdout([] { step_lines::Begin(true, "Reading", "L1.RAW"); }), "Reading L1.RAW...");
    EXPECT_EQ(CaptureStdout([] { step_lines::End(true); }), "Done!\n");
    EXPECT_EQ(CaptureStdout([] { step_lines::End(true, ""); }), "\n");
}

TEST(StepLines, AreForVerboseRunsOnly) {
    EXPECT_EQ(CaptureStdout([] {
                  step_lines::Begin(false, "Fixing");
                  step_lines::Begin(false, "Reading", "L1.RAW");
                  step_lines::End(false);
              }),
              "");
}

}  // namespace
