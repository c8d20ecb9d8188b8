// SPDX-License-Identifier: MIT
#include "batch/fields.h"

#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

using namespace std::string_literals;

TEST(Fields, AreReadAsTheyWereWritten) {
    const std::vector<std::string> texts = {"", "line\nfeed", "\xFF", "", "end"};
    EXPECT_EQ(fields::Joined(texts), "\0line\nfeed\0\xFF\0\0end\0"s);
    EXPECT_EQ(fields::Split(fields::Joined(texts)), texts);
}

TEST(Fields, WithoutItsNulTheLastOneIsNone) {
    EXPECT_EQ(fields::Split("one\0tw"s), (std::vector<std::string>{"one"}));
    EXPECT_TRUE(fields::Split("").empty());
    EXPECT_TRUE(fields::Split("cut").empty());
}

TEST(Fields, NumbersAreDigitsOnly) {
    EXPECT_EQ(fields::Number("0"), 0U);
    EXPECT_EQ(fields::Number("18446744073709551615"), UINT64_MAX);
    for (const char* text : {"", "18446744073709551616", "-1", "+1", " 1", "1 ", "1x", "0x1"}) {
        EXPECT_EQ(fields::Number(text), std::nullopt) << text;
    }
}

TEST(Fields, AFileIsReadWhole) {
    const support::TempFolder folder;
    ASSERT_FALSE(fields::WritePlain(folder / "file", "a\0b\n"s));
    EXPECT_EQ(fields::ReadWhole(folder / "file"), "a\0b\n"s);
    ASSERT_FALSE(fields::WritePlain(folder / "file", "c"));
    EXPECT_EQ(fields::ReadWhole(folder / "file"), "c");
}

TEST(Fields, AFileThatIsNotThereIsNothing) {
    const support::TempFolder folder;
    EXPECT_EQ(fields::ReadWhole(folder / "file"), std::nullopt);
    EXPECT_EQ(fields::ReadWhole(folder.prefix()), std::nullopt);
    EXPECT_EQ(fields::WritePlain(folder / "missing/file", "c"), std::errc::no_such_file_or_directory);
}

TEST(Fields, AFileThatCannotBeReadIsNothing) {
    EXPECT_EQ(fields::ReadWhole("/proc/self/mem"),
              std::nullopt);  // its end cannot be found, nor byte 0 be read
}

}  // namespace
