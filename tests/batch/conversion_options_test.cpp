// SPDX-License-Identifier: MIT
#include "batch/conversion_options.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "exif/lensdb.h"

namespace {

using Words = std::vector<std::string>;

TEST(ConversionOptions, WhatABatchDecidesIsRefused) {
    EXPECT_EQ(conversion_options::Refusal(Words{"-b", "100", "-l", "-s", "-r"}), "");
    EXPECT_EQ(conversion_options::Refusal(Words{"-i", "x"}),
              "-i after --: the input and the output of each velmarcon are given to it from here");
    EXPECT_NE(conversion_options::Refusal(Words{"-v", "-output", "x"}), "");
    EXPECT_NE(conversion_options::Refusal(Words{"-sd"}), "");
}

TEST(ConversionOptions, AWordThatBelongsToNoOptionIsRefused) {
    EXPECT_EQ(conversion_options::Refusal(Words{"-b", "100", "200"}),
              "'200' after -- is no option, nor the value of one");
}

TEST(ConversionOptions, WhatWouldBeIgnoredIsTold) {
    const lensdb lenses("");
    EXPECT_TRUE(conversion_options::Remarks(Words{"-b", "100", "-r"}, lenses).empty());
    EXPECT_EQ(conversion_options::Remarks(Words{"-x"}, lenses).size(), 1U);
    EXPECT_EQ(conversion_options::Remarks(Words{"-vb", "-b", "70000"}, lenses).size(), 2U);
}

TEST(ConversionOptions, TellWhetherTheyNeedADatabase) {
    const auto needed = [](const Words& words) {
        return conversion_options::NeedDatabases(conversion_options::Settings(words));
    };
    EXPECT_FALSE(needed({}));
    EXPECT_FALSE(needed({"-b", "100", "-p", "-c", "-v", "-r"}));
    for (const char* option : {"-l", "-s", "-st", "-sb"}) {
        EXPECT_TRUE(needed({option})) << option;
    }
}

TEST(ConversionOptions, OfWhichOnlyThoseCountThatChangeTheDng) {
    using conversion_options::MakeSameDng;
    EXPECT_TRUE(MakeSameDng(Words{}, Words{"-r", "-verbose"}));
    EXPECT_TRUE(MakeSameDng(Words{"-b"}, Words{"-r", "-black", "92"}));
    EXPECT_TRUE(MakeSameDng(Words{"-p", "-b", "100"}, Words{"-b", "100", "-p"}));
    EXPECT_FALSE(MakeSameDng(Words{"-b"}, Words{}));
    EXPECT_FALSE(MakeSameDng(Words{"-b"}, Words{"-b", "93"}));
    EXPECT_FALSE(MakeSameDng(Words{"-l"}, Words{"-l", "000001"}));
    for (const char* option : {"-p", "-l", "-s", "-st", "-sb", "-c"}) {
        EXPECT_FALSE(MakeSameDng(Words{option}, Words{})) << option;
    }
    EXPECT_EQ(conversion_options::ThatChangeTheDng(Words{"-r", "-b", "100", "-v", "-p"}),
              (Words{"-b", "100", "-p"}));
}

TEST(ConversionOptions, InOneLineTheyCanBeReadByAShell) {
    EXPECT_EQ(conversion_options::Line(Words{}), "no options");
    EXPECT_EQ(conversion_options::Line(Words{"-b", "100", "a b"}), "-b 100 'a b'");
}

}  // namespace
