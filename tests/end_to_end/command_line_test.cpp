// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/support/files.h"
#include "tests/support/program.h"
#include "tests/support/test_pair.h"

namespace {

TEST(CommandLine, ConvertsThePairsOfTheCurrentFolder) {
    const support::TempFolder folder;
    support::WritePair(folder.path().string(), "L1000001");
    const auto outcome = support::RunProgram(VELMARCON_PROGRAM, {}, {.folder = folder.path().string()});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output, "\nImage: L1000001.RAW\n\n");
    EXPECT_EQ(support::Names(folder.path().string()),
              (std::vector<std::string>{"L1000001.DNG", "L1000001.JPG", "L1000001.RAW"}));
}

}  // namespace
