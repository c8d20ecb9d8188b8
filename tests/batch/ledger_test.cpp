// SPDX-License-Identifier: MIT
#include "batch/ledger.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "batch/fields.h"
#include "tests/support/files.h"

namespace {

LedgerEntry AnEntry(const std::string& source) {
    return {source, "1 2 3",           "4 5 6", "", "7 8 9 10 11 12 13", "0123456789abcdef",
            "cut",  {"-b", "100", ""}, true};
}

void ExpectEntry(const std::optional<LedgerEntry>& entry, const LedgerEntry& expected) {
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->source, expected.source);
    EXPECT_EQ(entry->raw_state, expected.raw_state);
    EXPECT_EQ(entry->jpg_state, expected.jpg_state);
    EXPECT_EQ(entry->bia_state, expected.bia_state);
    EXPECT_EQ(entry->dng_state, expected.dng_state);
    EXPECT_EQ(entry->fingerprint, expected.fingerprint);
    EXPECT_EQ(entry->flaws, expected.flaws);
    EXPECT_EQ(entry->options, expected.options);
    EXPECT_EQ(entry->on_disk, expected.on_disk);
}

class LedgerTest : public testing::Test {
  protected:
    const support::TempFolder folder_;
    const std::string path_ = folder_ / "ledger";
};

TEST_F(LedgerTest, RemembersWhatWasAdded) {
    const std::string odd = "/out/line\nfeed \xFF:{}.DNG";
    {
        Ledger ledger;
        ASSERT_FALSE(ledger.Open(path_));
        EXPECT_FALSE(ledger.Find(odd).has_value());
        EXPECT_TRUE(ledger.Add(odd, AnEntry("/in/1.RAW")));
        EXPECT_TRUE(ledger.Add("/out/2.DNG", AnEntry("/in/2.RAW")));
        ExpectEntry(ledger.Find(odd), AnEntry("/in/1.RAW"));
    }
    Ledger again;
    ASSERT_FALSE(again.Open(path_));
    ExpectEntry(again.Find(odd), AnEntry("/in/1.RAW"));
    ExpectEntry(again.Find("/out/2.DNG"), AnEntry("/in/2.RAW"));
}

TEST_F(LedgerTest, TheLastWordCounts) {
    LedgerEntry later = AnEntry("/in/1.RAW");
    later.options = {"-l"};
    later.on_disk = false;
    {
        Ledger ledger;
        ASSERT_FALSE(ledger.Open(path_));
        EXPECT_TRUE(ledger.Add("/out/1.DNG", AnEntry("/in/1.RAW")));
        EXPECT_TRUE(ledger.Add("/out/1.DNG", later));
        EXPECT_TRUE(ledger.Add("/out/2.DNG", later));
        EXPECT_TRUE(ledger.Remove("/out/2.DNG"));
        EXPECT_FALSE(ledger.Find("/out/2.DNG").has_value());
    }
    Ledger again;
    ASSERT_FALSE(again.Open(path_));
    ExpectEntry(again.Find("/out/1.DNG"), later);
    EXPECT_FALSE(again.Find("/out/2.DNG").has_value());
}

TEST_F(LedgerTest, WhatAPowerCutLeftOfAnEntryIsNone) {
    {
        Ledger ledger;
        ASSERT_FALSE(ledger.Open(path_));
        EXPECT_TRUE(ledger.Add("/out/1.DNG", AnEntry("/in/1.RAW")));
    }
    const std::string whole = support::ReadText(path_);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        support::WriteFile(path_, whole + whole.substr(0, length));
        Ledger ledger;
        ASSERT_FALSE(ledger.Open(path_));
        ExpectEntry(ledger.Find("/out/1.DNG"), AnEntry("/in/1.RAW"));
        // What comes after the piece is read again.
        EXPECT_TRUE(ledger.Add("/out/2.DNG", AnEntry("/in/2.RAW")));
        Ledger again;
        ASSERT_FALSE(again.Open(path_));
        ExpectEntry(again.Find("/out/2.DNG"), AnEntry("/in/2.RAW"));
    }
}

TEST_F(LedgerTest, OptionsThatAreNoneAreLeftOut) {
    const std::vector<std::string> texts = {"/out/1.DNG", "/in/1.RAW", "", "",          "",
                                            "",           "",          "", "2:-b99:-x", "1"};
    support::WriteFile(path_, fields::Joined(texts));
    Ledger ledger;
    ASSERT_FALSE(ledger.Open(path_));
    const auto entry = ledger.Find("/out/1.DNG");
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->options, (std::vector<std::string>{"-b"}));
}

TEST_F(LedgerTest, CompactingLeavesOneEntryForEachDng) {
    Ledger ledger;
    ASSERT_FALSE(ledger.Open(path_));
    EXPECT_TRUE(ledger.Add("/out/1.DNG", AnEntry("/in/1.RAW")));
    const std::size_t one = support::ReadText(path_).size();
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(ledger.Add("/out/1.DNG", AnEntry("/in/1.RAW")));
    }
    EXPECT_EQ(support::ReadText(path_).size(), 11 * one);
    ASSERT_FALSE(ledger.Compact());
    EXPECT_EQ(support::ReadText(path_).size(), one);
    EXPECT_TRUE(ledger.Add("/out/2.DNG", AnEntry("/in/2.RAW")));
    EXPECT_EQ(support::ReadText(path_).size(), 2 * one);
}

TEST_F(LedgerTest, OneThatCannotBeReadIsAnError) {
    Ledger ledger;
    EXPECT_TRUE(ledger.Open(folder_.path().string()));
    EXPECT_TRUE(ledger.Open(folder_ / "missing/ledger"));
}

}  // namespace
