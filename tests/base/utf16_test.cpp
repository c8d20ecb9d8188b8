// SPDX-License-Identifier: MIT
#include "base/utf16.h"

#include <string>

#include <gtest/gtest.h>

namespace {

TEST(Utf16, CharactersOfEveryLengthAreConvertedBothWays) {
    const std::u16string text = {u'A',   0x00FC, 0x5199, 0xD83D, 0xDCF7,
                                 0x07FF, 0x0800, 0xFFFF, 0xDBFF, 0xDFFF};
    const std::string utf8 =
        "A\xC3\xBC\xE5\x86\x99\xF0\x9F\x93\xB7\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF4\x8F\xBF\xBF";
    EXPECT_EQ(utf16::ToUtf8(text), utf8);
    EXPECT_EQ(utf16::FromUtf8(utf8), text);
}

TEST(Utf16, EmptyTextIsEmpty) {
    EXPECT_EQ(utf16::ToUtf8(u""), "");
    EXPECT_EQ(utf16::FromUtf8(""), u"");
}

TEST(Utf16, HalfASurrogatePairIsConvertedBothWays) {
    for (const std::u16string& text :
         {std::u16string{0xD800}, std::u16string{0xDFFF, u'x'}, std::u16string{0xDC00, 0xD800},
          std::u16string{0xD83D, 0xD83D, 0xDCF7}}) {
        EXPECT_EQ(utf16::FromUtf8(utf16::ToUtf8(text)), text);
    }
    EXPECT_EQ(utf16::ToUtf8(std::u16string{0xD800}), "\xED\xA0\x80");
}

TEST(Utf16, BytesThatAreNotUtf8BecomeReplacementCharacters) {
    EXPECT_EQ(utf16::FromUtf8("a\xFC"
                              "b"),
              u"a\xFFFD"
              u"b");
    EXPECT_EQ(utf16::FromUtf8("\xC3"), u"\xFFFD");            // ends early
    EXPECT_EQ(utf16::FromUtf8("\xC3x"), u"\xFFFDx");          // goes on as something else
    EXPECT_EQ(utf16::FromUtf8("\x80"), u"\xFFFD");            // begins in the middle
    EXPECT_EQ(utf16::FromUtf8("\xC1\x81"), u"\xFFFD\xFFFD");  // longer than it needs to be
    EXPECT_EQ(utf16::FromUtf8("\xF4\x90\x80\x80"), u"\xFFFD\xFFFD\xFFFD\xFFFD");  // beyond Unicode
    EXPECT_EQ(utf16::FromUtf8("\xFF"), u"\xFFFD");
}

}  // namespace
