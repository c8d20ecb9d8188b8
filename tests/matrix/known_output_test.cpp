// SPDX-License-Identifier: MIT
#include "tests/matrix/known_output.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using matrix::Kind;
using matrix::Said;
using matrix::Understand;

TEST(KnownOutput, ConversionPrintsOnlyItsHeader) {
    const Said said = Understand("\nImage: L1.RAW\n\n", Kind::kPair);
    EXPECT_EQ(said.unknown, "");
    EXPECT_FALSE(said.failed);
    EXPECT_EQ(said.status, 0);
    EXPECT_EQ(said.message, "");
}

TEST(KnownOutput, HeaderOfAnotherImageIsUnknown) {
    EXPECT_EQ(Understand("\nImage: L1.RAW\n\n", Kind::kDng).unknown, "Image: L1.RAW");
    EXPECT_EQ(Understand("Image 1 of 2: L1.RAW\n", Kind::kPair).unknown, "Image 1 of 2: L1.RAW");
}

TEST(KnownOutput, IncludesTheStepsOfAVerboseRun) {
    const Said said = Understand(
        "\nImage: L1.RAW\n\nReading L1.JPG...Done!\nReading L1.RAW...Done!\nFixing pixel errors...Done!\n"
        "Fixing sensor dark field...Done!\nWriting DNG header...Done!\nWriting image data...Done!\n",
        Kind::kPair);
    EXPECT_EQ(said.unknown, "");
    EXPECT_EQ(Understand("Done!\n", Kind::kPair).unknown, "Done!");
    EXPECT_EQ(Understand("Reading L1.JPG...Do\n", Kind::kPair).unknown, "Reading L1.JPG...Do");
}

TEST(KnownOutput, FailureNamesTheFile) {
    const Said said = Understand("Reading L1.JPG...L1.JPG: Error #0009: Damaged EXIF in JPG.\n", Kind::kPair);
    EXPECT_EQ(said.unknown, "");
    EXPECT_TRUE(said.failed);
    EXPECT_EQ(said.status, 0);
    EXPECT_EQ(said.message, "L1.JPG: Error #0009: Damaged EXIF in JPG.");
}

TEST(KnownOutput, OtherErrorsAreUnknown) {
    for (const std::string line :
         {"L1.JPG: Error #0009: Damaged EXIF in JPG", "L1.JPG: Error #0017: Damaged DNG file.",
          "L2.JPG: Error #0009: Damaged EXIF in JPG.", "Unknown Error, please contact Author.", "Error #"}) {
        EXPECT_EQ(Understand(line + "\n", Kind::kPair).unknown, line);
    }
}

TEST(KnownOutput, WarningDoesNotPreventTheDng) {
    const Said said = Understand(
        "\nImage: L1.DNG\n\nError #0013: Lens could not be detected.\n"
        "No dark field correction values available for camera No.4294967295.\n",
        Kind::kDng);
    EXPECT_EQ(said.unknown, "");
    EXPECT_FALSE(said.failed);
    EXPECT_EQ(said.message, "Error #0013: Lens could not be detected.");
    const std::string numberless = "No dark field correction values available for camera No.x.";
    EXPECT_EQ(Understand(numberless + "\n", Kind::kDng).unknown, numberless);
}

TEST(KnownOutput, FatalErrorDeterminesTheExitStatus) {
    EXPECT_EQ(Understand("Error #0012: Missing lens database file lensdb.ini.\n", Kind::kPair).status, 12);
    const std::string too_long =
        "L1.DNG: Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.\n";
    EXPECT_EQ(Understand(too_long, Kind::kDng).status, 19);
    EXPECT_EQ(Understand("\nImage: L1.DNG\n\n" + too_long, Kind::kDng).status, 0);
}

TEST(KnownOutput, DarkReferenceImpliesANewDatabase) {
    const std::string calculating =
        "Calculating new sensor level correction values for Camera -1 from image L1.RAW.\n";
    EXPECT_TRUE(Understand(calculating, Kind::kPair).new_database);
    EXPECT_FALSE(
        Understand(calculating + "bin/sensdb.ini: sensor database not written: No space\n", Kind::kPair)
            .new_database);
}

TEST(KnownOutput, UnwrittenDngIsAFailure) {
    EXPECT_TRUE(Understand("out/L1.DNG: DNG not written: File too large\n", Kind::kPair).failed);
}

}  // namespace
