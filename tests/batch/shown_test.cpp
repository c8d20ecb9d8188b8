// SPDX-License-Identifier: MIT
#include "batch/shown.h"

#include <cstdint>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

namespace {

TEST(Shown, LeavesANameAsItIs) {
    for (const std::string name :
         {"L1000001.RAW", "two words", "it's \"a\" $HOME `id`", "写真 2026", "latin\xE9"}) {
        EXPECT_EQ(Shown(name), name);
    }
}

TEST(Shown, LetsNoNameEndTheLineOrSteerTheTerminal) {
    EXPECT_EQ(Shown("line\nfeed"), "$'line\\nfeed'");
    EXPECT_EQ(Shown("\x1B[2J"), "$'\\033[2J'");
    EXPECT_EQ(Shown("a\tb\rc\x7F"), "$'a\\tb\\rc\\177'");
    EXPECT_EQ(Shown("it's\\\n"), "$'it\\'s\\\\\\n'");
}

TEST(Shown, TellsErrorsInWords) {
    EXPECT_EQ(ErrorText(std::make_error_code(std::errc::no_space_on_device)), "No space left on device");
    EXPECT_EQ(ErrorText({13, std::system_category()}), "Permission denied");
}

TEST(Shown, CountsPictures) {
    EXPECT_EQ(NumberOfPictures(0), "0 pictures");
    EXPECT_EQ(NumberOfPictures(1), "1 picture");
    EXPECT_EQ(NumberOfPictures(2), "2 pictures");
}

TEST(Shown, RoundsMegabytesUpAndGigabytesToTheNearest) {
    EXPECT_EQ(Bytes(0), "0 MB");
    EXPECT_EQ(Bytes(1), "1 MB");
    EXPECT_EQ(Bytes(1'000'000), "1 MB");
    EXPECT_EQ(Bytes(1'000'001), "2 MB");
    EXPECT_EQ(Bytes(999'000'000), "999 MB");
    EXPECT_EQ(Bytes(1'000'000'000), "1.0 GB");
    EXPECT_EQ(Bytes(13'440'000'000), "13.4 GB");
    EXPECT_EQ(Bytes(UINT64_MAX), "18446744073.7 GB");
}

TEST(Shown, TellsDurationsInWhatSuitsTheirLength) {
    EXPECT_EQ(Duration(-1), "0.0 s");
    EXPECT_EQ(Duration(0.24), "0.2 s");
    EXPECT_EQ(Duration(40.4), "40 s");
    EXPECT_EQ(Duration(61), "1 min");
    EXPECT_EQ(Duration(720), "12 min");
    EXPECT_EQ(Duration(12000), "3 h 20 min");
    EXPECT_EQ(Duration(1e300), "277777 h 47 min");
}

}  // namespace
