// SPDX-License-Identifier: MIT
#include "batch/batch_options.h"

#include <cstddef>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "packaging/batch_option_names.h"

namespace {

using Words = std::vector<std::string>;

std::string ProblemOf(const Words& arguments) {
    BatchOptions options;
    return ReadBatchOptions(arguments, options);
}

BatchOptions Read(const Words& arguments) {
    BatchOptions options;
    EXPECT_EQ(ReadBatchOptions(arguments, options), "");
    return options;
}

TEST(BatchOptions, WithoutAnyTheDefaultsHold) {
    const BatchOptions options = Read({"in"});
    EXPECT_EQ(options.folders, Words{"in"});
    EXPECT_EQ(options.output, "");
    EXPECT_EQ(options.jobs, 0U);
    EXPECT_FALSE(options.no_verify || options.verify || options.fresh || options.dry_run || options.rename);
    EXPECT_TRUE(options.conversion.empty());
}

TEST(BatchOptions, EachFormOfAValueIsRead) {
    for (const Words& words : {Words{"-o", "out", "in"}, Words{"-oout", "in"}, Words{"--output", "out", "in"},
                               Words{"in", "--output=out"}}) {
        EXPECT_EQ(Read(words).output, "out");
        EXPECT_EQ(Read(words).folders, Words{"in"});
    }
    EXPECT_EQ(Read({"--output=a=b", "in"}).output, "a=b");
    EXPECT_EQ(Read({"--hosts", "a,b", "--from0=-", "--json", "j", "--state=s", "in"}).hosts, "a,b");
}

TEST(BatchOptions, EachFlagIsRead) {
    const BatchOptions options =
        Read({"--fresh", "-n", "-q", "--checksums", "--rename", "--accept-damaged", "--anyway", "--notify",
              "--keep-time", "--newest-first", "--no-verify", "in"});
    EXPECT_TRUE(options.fresh && options.dry_run && options.quiet && options.checksums && options.rename &&
                options.accept_damaged && options.anyway && options.notify && options.keep_time &&
                options.newest_first && options.no_verify);
}

TEST(BatchOptions, WhatFollowsTheDashesIsForTheConversion) {
    const BatchOptions options = Read({"in", "--", "-o", "--", "-r"});
    EXPECT_EQ(options.folders, Words{"in"});
    EXPECT_EQ(options.conversion, (Words{"-o", "--", "-r"}));
}

TEST(BatchOptions, JobsAreANumberFrom1To9999) {
    EXPECT_EQ(Read({"-j1", "in"}).jobs, 1U);
    EXPECT_EQ(Read({"--jobs=9999", "in"}).jobs, 9999U);
    for (const char* value : {"0", "01", "10000", "-1", "x", "1.5", "50%", ""}) {
        EXPECT_TRUE(ProblemOf({"--jobs", value, "in"}).starts_with("--jobs needs a ")) << value;
    }
}

TEST(BatchOptions, AValueMustNotBeMissing) {
    EXPECT_EQ(ProblemOf({"in", "-o"}), "-o needs a value");
    EXPECT_EQ(ProblemOf({"in", "--json="}), "--json needs a value");
}

TEST(BatchOptions, UnknownOnesAreRefused) {
    EXPECT_EQ(ProblemOf({"in", "--frsh"}), "unknown option --frsh; options of velmarcon come after --");
    EXPECT_EQ(ProblemOf({"--quiet=yes", "in"}),
              "unknown option --quiet=yes; options of velmarcon come after --");
    EXPECT_TRUE(ProblemOf({"in", "--delete-originals"}).starts_with("there is no --delete-originals: "));
}

TEST(BatchOptions, HelpNeedsNothingElse) {
    EXPECT_TRUE(Read({"-h", "--frsh"}).help);
    EXPECT_TRUE(Read({"--version"}).version);
}

TEST(BatchOptions, SomeDoNotGoTogether) {
    EXPECT_EQ(ProblemOf({}), "no folder given");
    EXPECT_EQ(ProblemOf({"--", "in"}), "no folder given");
    EXPECT_NE(ProblemOf({"--verify", "--no-verify", "in"}), "");
    EXPECT_NE(ProblemOf({"--verify", "--hosts=:", "in"}), "");
    EXPECT_NE(ProblemOf({"--rename", "--hosts=:", "in"}), "");
}

TEST(BatchOptions, HelpFitsIntoATerminal) {
    std::istringstream help(kBatchHelp);
    for (std::string line; std::getline(help, line);) {
        EXPECT_LE(line.size(), 79U) << line;
    }
}

/// The names at the start of the lines of --help: "  -x, --xyz" and "      --xyz".
std::set<std::string> NamesInHelp() {
    constexpr std::size_t long_name = 6;
    std::set<std::string> names;
    std::istringstream help(kBatchHelp);
    for (std::string line; std::getline(help, line);) {
        if (line.starts_with("  -") && line.find(", ") == 4) {
            names.insert(line.substr(2, 2));
        }
        if (line.starts_with("  ") && line.find("--") == long_name) {
            names.insert(line.substr(long_name, line.find_first_of(" =,[", long_name) - long_name));
        }
    }
    return names;
}

TEST(BatchOptions, TheLauncherKnowsThoseThatVelmarconLacks) {
    std::set<std::string> lacking = NamesInHelp();
    for (const char* has : {"-o", "--output", "-h", "--help", "--version"}) {
        EXPECT_EQ(lacking.erase(has), 1U) << has;
    }
    EXPECT_EQ(std::set<std::string>(kBatchOptionNames.begin(), kBatchOptionNames.end()), lacking);
}

}  // namespace
