// SPDX-License-Identifier: MIT
#include "sensor/instruction_set.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/sensor/versions.h"

namespace {

TEST(InstructionSet, BaselineIsAlwaysAvailable) {
    EXPECT_TRUE(instruction_set::IsAvailable(InstructionSet::kBaseline));
}

TEST(InstructionSet, BestIsTheLastThatIsAvailable) {
    EXPECT_EQ(instruction_set::Best(), AvailableVersions().back());
}

struct Difference {
    [[gnu::always_inline]] static int Run(int a, int b) { return a - b; }
};

TEST(InstructionSet, RunPassesArgumentsAndResultInEveryVersion) {
    for (const InstructionSet version : AvailableVersions()) {
        EXPECT_EQ(instruction_set::Run<Difference>(version, 5, 3), 2);
    }
}

}  // namespace
