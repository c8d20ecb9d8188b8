// SPDX-License-Identifier: MIT
#include "batch/passed_over.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/capture_stdout.h"
#include "tests/support/files.h"

namespace {

using Words = std::vector<std::string>;

FoundPictures Everything() {
    FoundPictures found;
    found.excluded = {"/out"};
    found.small = {"/in/l1.raw"};
    found.cut = {"/in/CUT.DNG"};
    found.of_changed_length = {"/in/LONG.DNG"};
    found.jpegs = {"/in/L2.JPG"};
    found.of_macos = 3;
    found.none = {"/in/notes.txt"};
    found.not_found = {"L9.RAW"};
    return found;
}

TEST(PassedOver, IsToldSortBySort) {
    EXPECT_EQ(support::CaptureStdout([] { passed_over::Tell(Everything(), false); }),
              "Ignored, not in capital letters: /in/l1.raw\n"
              "Ignored, files of macOS (._*): 3\n"
              "Too short for a camera DNG: /in/CUT.DNG\n"
              "Camera DNG, but another program has changed its length; name it by itself to velmarcon: "
              "/in/LONG.DNG\n"
              "No picture: /in/notes.txt\n"
              "In the list, but no picture of the folders: L9.RAW\n"
              "1 JPEG has no RAW file next to it\n"
              "JPEG without a RAW file: /in/L2.JPG\n");
}

TEST(PassedOver, IsToldByTenNamesOfASort) {
    FoundPictures found;
    for (int i = 10; i < 22; ++i) {
        found.small.push_back("/in/l" + std::to_string(i) + ".raw");
    }
    const std::string told = support::CaptureStdout([&] { passed_over::Tell(found, true); });
    EXPECT_TRUE(told.ends_with("letters: /in/l19.raw\n... and 2 more\n")) << told;
}

TEST(PassedOver, QuietLeavesOutJpegsOnly) {
    FoundPictures found;
    found.jpegs = {"/in/L2.JPG", "/in/L3.JPG"};
    EXPECT_EQ(support::CaptureStdout([&] { passed_over::Tell(found, true); }), "");
    EXPECT_EQ(support::CaptureStdout([&] { passed_over::Tell(found, false); }),
              "2 JPEGs have no RAW file next to them\n"
              "JPEG without a RAW file: /in/L2.JPG\n"
              "JPEG without a RAW file: /in/L3.JPG\n");
}

TEST(PassedOver, IsInTheReport) {
    const support::TempFolder folder;
    Tally tally;
    ASSERT_EQ(tally.Open(folder / "report", "", "", false), "");
    passed_over::Note(Everything(), tally);
    ASSERT_TRUE(tally.Close());
    EXPECT_EQ(support::ReadText(folder / "report"),
              "not searched, because it is the output folder: /out\n"
              "ignored, not in capital letters: /in/l1.raw\n"
              "too short for a camera DNG: /in/CUT.DNG\n"
              "Camera DNG, but another program has changed its length; name it by itself to velmarcon: "
              "/in/LONG.DNG\n"
              "JPEG without a RAW file: /in/L2.JPG\n"
              "ignored, files of macOS (._*): 3\n");
}

/// Whether all was found although the search has put a name into `sort`.
bool AllWasFoundWith(Words FoundPictures::*sort, bool accept_damaged) {
    FoundPictures found;
    found.*sort = {"/in/name"};
    return passed_over::AllWasFound(found, accept_damaged);
}

TEST(PassedOver, WhatMayBeAPictureIsMissed) {
    for (const auto sort : {&FoundPictures::small, &FoundPictures::cut, &FoundPictures::of_changed_length}) {
        EXPECT_FALSE(AllWasFoundWith(sort, false));
        EXPECT_TRUE(AllWasFoundWith(sort, true));
    }
}

TEST(PassedOver, WhatWasAskedForIsMissedInAnyCase) {
    for (const auto sort : {&FoundPictures::unread, &FoundPictures::none, &FoundPictures::not_found}) {
        EXPECT_FALSE(AllWasFoundWith(sort, false));
        EXPECT_FALSE(AllWasFoundWith(sort, true));
    }
}

TEST(PassedOver, WhatIsNoPictureIsNotMissed) {
    for (const auto sort : {&FoundPictures::jpegs, &FoundPictures::excluded}) {
        EXPECT_TRUE(AllWasFoundWith(sort, false));
    }
    FoundPictures found;
    found.of_macos = 1;
    EXPECT_TRUE(passed_over::AllWasFound(found, false));
}

}  // namespace
