// SPDX-License-Identifier: MIT
#include "calibrate/calibrate_options.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::string>;

std::string Problem(const Texts& arguments) {
    CalibrateOptions options;
    return ReadOptions(arguments, options);
}

TEST(CalibrateOptionsTest, TakesEveryOption) {
    CalibrateOptions options;
    EXPECT_EQ(ReadOptions(Texts{"a", "--flat", "b", "--flat=c", "--database", "d", "--report=e", "--dry-run",
                                "--doubtful", "--", "--f"},
                          options),
              "");
    EXPECT_EQ(options.darks, (Texts{"a", "--f"}));
    EXPECT_EQ(options.flats, (Texts{"b", "c"}));
    EXPECT_EQ(options.database, "d");
    EXPECT_EQ(options.report, "e");
    EXPECT_TRUE(options.dry_run);
    EXPECT_TRUE(options.doubtful);
    EXPECT_FALSE(options.check);
}

TEST(CalibrateOptionsTest, SaysWhatIsWrong) {
    EXPECT_EQ(Problem({}), "name at least one dark exposure");
    EXPECT_EQ(Problem({"--dark", "x"}), "unknown option --dark");
    EXPECT_EQ(Problem({"x", "--flat"}), "--flat needs a value");
    EXPECT_EQ(Problem({"x", "--report="}), "--report needs a value");
    EXPECT_EQ(Problem({"x", "--report", "a", "--report", "b"}), "--report was given twice");
    EXPECT_EQ(Problem({"x", "--check", "--flat", "y"}), "--check goes with --database only");
}

TEST(CalibrateOptionsTest, HelpNeedsNoExposure) {
    EXPECT_EQ(Problem({"--help"}), "");
    EXPECT_EQ(Problem({"--version"}), "");
}

}  // namespace
