// SPDX-License-Identifier: MIT
#include "packaging/shell_word.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* kWithUmlaut = "H\xC3\xA4user";

TEST(ShellWord, StandsAsItIsWhereAShellLeavesItAlone) {
    for (const char* text : {"card", "../card/L1000001.RAW", "-vb", "--input=x", kWithUmlaut, "100%"}) {
        EXPECT_EQ(ShellWord(text), text);
    }
}

TEST(ShellWord, IsQuotedWhereAShellWouldReadMoreIntoIt) {
    EXPECT_EQ(ShellWord(""), "''");
    EXPECT_EQ(ShellWord("My card"), "'My card'");
    EXPECT_EQ(ShellWord("*.RAW"), "'*.RAW'");
    EXPECT_EQ(ShellWord("~anna"), "'~anna'");
    EXPECT_EQ(ShellWord("Anna's"), "'Anna'\\''s'");
    EXPECT_EQ(ShellWord("$HOME"), "'$HOME'");
}

TEST(ShellWord, HasNoControlCharacters) {
    EXPECT_EQ(ShellWord("a\nb\x1B[31m\x7F"), "'a?b?[31m?'");
}

TEST(ShellWords, AreTheFirstAndTheNumberOfTheOthers) {
    EXPECT_EQ(ShellWords("My card", 1), "'My card'");
    EXPECT_EQ(ShellWords("L1.RAW", 3), "L1.RAW and 2 more");
}

}  // namespace
