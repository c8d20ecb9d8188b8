// SPDX-License-Identifier: MIT
#include "batch/printed_lines.h"

#include <string>

#include <gtest/gtest.h>

namespace {

TEST(PrintedLines, TheFirstErrorIsTheReason) {
    const PrintedLines lines = ReadPrinted(
        "Image 1 of 1\nL1.JPG: Error #0010: Unable to find JPG file.\nL1.DNG: Error #0001: Second.\n");
    EXPECT_EQ(lines.reason, "L1.JPG: Error #0010: Unable to find JPG file.");
    EXPECT_EQ(lines.remarks, "");
}

TEST(PrintedLines, WhatADngLacksIsARemark) {
    const PrintedLines lines =
        ReadPrinted("Error #0014: No Sensor database found.\nNo dark field correction values available\n");
    EXPECT_EQ(lines.remarks,
              "Error #0014: No Sensor database found.; No dark field correction values available");
}

TEST(PrintedLines, WithoutAnErrorTheLastLineIsTheReason) {
    EXPECT_EQ(ReadPrinted("something\nwent wrong\n\nImage: L1\n").reason, "went wrong");
    EXPECT_EQ(ReadPrinted("no line feed").reason, "no line feed");
    EXPECT_EQ(ReadPrinted("").reason, "");
    EXPECT_EQ(ReadPrinted("\n\n").reason, "");
}

TEST(PrintedLines, ADngThatWasNotWrittenIsAReason) {
    const PrintedLines lines = ReadPrinted("out/L1.DNG: DNG not written: Permission denied\nlast\n");
    EXPECT_EQ(lines.reason, "out/L1.DNG: DNG not written: Permission denied");
}

TEST(PrintedLines, KindsHaveNoNames) {
    EXPECT_EQ(KindOf("in/a\nb.JPG: Error #0010: Unable to find JPG file."),
              "Error #0010: Unable to find JPG file.");
    EXPECT_EQ(KindOf("out/写真.DNG: DNG not written: Permission denied"),
              "DNG not written: Permission denied");
    EXPECT_EQ(KindOf("something else"), "something else");
}

TEST(PrintedLines, AFullDiskIsKnownByTheReason) {
    EXPECT_TRUE(SaysDiskIsFull("L1.DNG: DNG not written: No space left on device"));
    EXPECT_TRUE(SaysDiskIsFull("L1.DNG: DNG not written: Disk quota exceeded"));
    EXPECT_FALSE(SaysDiskIsFull("L1.DNG: DNG not written: File too large"));
    EXPECT_FALSE(SaysDiskIsFull("No space left on device.DNG: DNG not written: Permission denied"));
    EXPECT_FALSE(SaysDiskIsFull("No space left on device"));
}

}  // namespace
