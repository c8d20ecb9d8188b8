// SPDX-License-Identifier: MIT
#include "batch/proof/same_picture.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "tests/batch_proof/made_dng.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tiff/tags.h"

namespace {

const PictureIdentity kDefault = {"00000000000000000000000000000001", "2007:08:02 22:13:49", 3106091};

TEST(SamePicture, APairAndItsDngAreOne) {
    MadeDng made;
    made.WritePair();
    made.Make();
    EXPECT_EQ(IdentityOfJpg(made.folder / "L1.JPG"), kDefault);
    EXPECT_EQ(IdentityOfDng(made.folder / "made/L1.DNG"), kDefault);
}

TEST(SamePicture, ACameraDngAndItsRepairAreOne) {
    MadeDng made;
    made.WriteCameraDng(support::FullCameraDng());
    made.Make();
    EXPECT_EQ(IdentityOfDng(made.folder / "L1.DNG"), kDefault);
    EXPECT_EQ(IdentityOfDng(made.folder / "made/L1.DNG"), kDefault);
}

TEST(SamePicture, AnotherNumberTimeOrCameraIsAnotherPicture) {
    const support::TempFolder folder;
    const auto identity = [&](const samples::Shot& shot) {
        support::WriteFile(folder / "a.JPG", samples::CameraJpeg(samples::CameraExif(shot)));
        return IdentityOfJpg(folder / "a.JPG").value();
    };
    samples::Shot shot;
    EXPECT_EQ(identity(shot), kDefault);
    shot.image_unique_id = "00000000000000000000000000000002";
    EXPECT_NE(identity(shot), kDefault);
    shot = {};
    shot.date_time = "2007:08:02 22:13:50";
    EXPECT_NE(identity(shot), kDefault);
    shot = {};
    shot.serial_number = 3106092;
    EXPECT_NE(identity(shot), kDefault);
}

TEST(SamePicture, ALargeSerialNumberSurvivesTheDng) {
    samples::Shot shot;
    shot.serial_number = 4000000000;
    MadeDng made;
    made.WritePair(shot);
    made.Make();
    EXPECT_EQ(IdentityOfJpg(made.folder / "L1.JPG")->camera, 4000000000U);
    EXPECT_EQ(IdentityOfDng(made.folder / "made/L1.DNG")->camera, 4000000000U);
}

TEST(SamePicture, ValuesBehindAllElseAreFound) {
    const support::TempFolder folder;
    auto block = samples::CameraExif({});
    samples::Remove(block.exif, tag::kImageUniqueID);
    constexpr std::uint32_t position = 300'000;  // counted from the TIFF header, byte 12 of the file
    samples::Set(block.exif, samples::RawEntry(tag::kImageUniqueID, 2, 6, position));
    auto jpeg = samples::CameraJpeg(block);
    jpeg.resize(12 + position);
    for (const char character : std::string("hidden\xFF\xD9")) {
        jpeg.push_back(static_cast<std::uint8_t>(character));
    }
    support::WriteFile(folder / "a.JPG", jpeg);
    EXPECT_EQ(IdentityOfJpg(folder / "a.JPG")->unique_id, "hidden");
}

TEST(SamePicture, WhatIsNoPictureHasNoIdentity) {
    const support::TempFolder folder;
    for (const std::string text : {"", "II*", "some text that is longer than a header"}) {
        support::WriteFile(folder / "a", text);
        EXPECT_FALSE(IdentityOfJpg(folder / "a"));
        EXPECT_FALSE(IdentityOfDng(folder / "a"));
    }
    EXPECT_FALSE(IdentityOfJpg(folder / "missing"));
    EXPECT_FALSE(IdentityOfDng(folder.prefix()));
}

TEST(SamePicture, TheIdentityIsToldInWords) {
    EXPECT_EQ(IdentityText(kDefault), "2007-08-02 22:13:49, camera 3106091");
    EXPECT_EQ(IdentityText({"1", "", 7}), "camera 7");
    EXPECT_EQ(IdentityText({"1", "a:\n\x1b[2J", 7}), "a-??[2J, camera 7");
}

}  // namespace
