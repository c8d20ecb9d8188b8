// SPDX-License-Identifier: MIT
#include "input/read_input_data.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/files.h"
#include "tests/support/test_pair.h"

namespace {

constexpr int kRawNotFound = 6;
constexpr int kJpgNotFound = 10;

TEST(ReadInputData, ANewRecordIsEmpty) {
    const ReadInputData record;
    EXPECT_TRUE(record.BiaData.empty());
    EXPECT_TRUE(record.ImageData.empty());
    EXPECT_TRUE(record.PreviewData.empty());
    EXPECT_FALSE(record.Verbose);
    EXPECT_FALSE(record.SubtractBia);
    EXPECT_EQ(record.ImageSize, 0);
    EXPECT_EQ(record.PreviewSize, 0);
    EXPECT_EQ(record.Width, 0);
    EXPECT_EQ(record.Height, 0);
    EXPECT_EQ(record.Folder + record.RawFileName + record.BiaFileName + record.JpgFileName, "");
    EXPECT_EQ(record.OutputLabel, "");
    EXPECT_EQ(record.Exif.ExposureTime, (Rational{0, 1}));
    EXPECT_EQ(record.Lens.DatabaseFile, "");
    EXPECT_TRUE(record.Lens.Lenses.empty());
}

TEST(ReadInputData, FileNamesAreMadeFromTheBaseName) {
    ReadInputData record;
    EXPECT_EQ(record.ProcessFile("/no/such/folder/", "L1.x", false, true), kJpgNotFound);
    EXPECT_EQ(record.Folder, "/no/such/folder/");
    EXPECT_EQ(record.RawFileName, "L1.x.RAW");
    EXPECT_EQ(record.BiaFileName, "L1.x.BIA");
    EXPECT_EQ(record.JpgFileName, "L1.x.JPG");
    EXPECT_EQ(record.OutputLabel, "");
    EXPECT_FALSE(record.Verbose);
    EXPECT_TRUE(record.SubtractBia);
}

TEST(ReadInputData, APairFillsTheRecordAndIsReportedJpegFirst) {
    const support::TempFolder folder;
    support::WritePair(folder.path(), "L1", samples::Shot{.iso = 320});
    ReadInputData record;
    EXPECT_EQ(
        support::CaptureStdout([&] { EXPECT_EQ(record.ProcessFile(folder.prefix(), "L1", true, false), 0); }),
        "Reading L1.JPG...Done!\nReading L1.RAW...Done!\n");
    EXPECT_EQ(record.Exif.ISOSpeedRatings, 320);
    EXPECT_EQ(record.Width, 3968);
    EXPECT_EQ(record.Height, 2646);
}

TEST(ReadInputData, NothingIsPrintedUnlessVerbose) {
    const support::TempFolder folder;
    support::WritePair(folder.path(), "L1");
    ReadInputData record;
    EXPECT_EQ(support::CaptureStdout(
                  [&] { EXPECT_EQ(record.ProcessFile(folder.prefix(), "L1", false, false), 0); }),
              "");
}

TEST(ReadInputData, WithoutItsJpegTheRawFileIsNotRead) {
    const support::TempFolder folder;
    support::WriteFile(folder / "L1.RAW", "x");
    ReadInputData record;
    EXPECT_EQ(record.ProcessFile(folder.prefix(), "L1", false, false), kJpgNotFound);
    EXPECT_EQ(record.ImageSize, 0);
}

TEST(ReadInputData, WithoutItsRawFileTheJpegIsRead) {
    const support::TempFolder folder;
    support::WriteFile(folder / "L1.JPG", samples::CameraJpeg(samples::CameraExif({})));
    ReadInputData record;
    EXPECT_EQ(support::CaptureStdout(
                  [&] { EXPECT_EQ(record.ProcessFile(folder.prefix(), "L1", true, false), kRawNotFound); }),
              "Reading L1.JPG...Done!\nReading L1.RAW...");
    EXPECT_EQ(record.Exif.ISOSpeedRatings, 160);
}

}  // namespace
