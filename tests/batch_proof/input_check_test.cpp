// SPDX-License-Identifier: MIT
#include "batch/proof/input_check.h"

#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "samples/maker_note.h"
#include "tests/batch_proof/made_dng.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tiff/tags.h"

namespace {

using Flaws = std::vector<InputFlaw>;

/// A folder with the JPEG of `block`.
class Jpeg {
  public:
    explicit Jpeg(const samples::ExifBlock& block) {
        support::WriteFile(folder_ / "L1.JPG", samples::CameraJpeg(block));
    }
    Flaws Find() const { return FlawsOfPair(folder_.prefix(), "L1"); }

  private:
    const support::TempFolder folder_;
};

/// The camera's EXIF block with another value of one entry of the maker note.
samples::ExifBlock WithNote(const samples::Entry& entry) {
    auto entries = samples::JpegMakerNoteEntries({});
    samples::Set(entries, entry);
    auto block = samples::CameraExif({});
    samples::Set(block.exif, samples::Undefined(tag::kMakerNote, samples::MakerNote(entries)));
    return block;
}

TEST(InputCheck, AGoodPairHasNoFlaw) {
    MadeDng made;
    made.WritePair();
    EXPECT_EQ(FlawsOfPair(made.folder.prefix(), "L1"), Flaws{});
}

TEST(InputCheck, ARawFileThatLacksAByteEndsEarly) {
    MadeDng made;
    made.WritePair();
    const auto raw = support::ReadFile(made.folder / "L1.RAW");
    support::WriteFile(made.folder / "L1.RAW", std::span(raw).first(21041099));
    EXPECT_EQ(FlawsOfPair(made.folder.prefix(), "L1"),
              (Flaws{{Flaw::kShortRaw,
                      "the RAW file has only 21041099 of 21041100 bytes, and the picture ends early"}}));
}

TEST(InputCheck, AnEditedJpegHasLostItsMakerNote) {
    const Flaws all = {
        {Flaw::kNoMakerNote,
         "the JPEG's maker note has no white balance, f-number and serial number, and the DNG has "
         "none either"}};
    EXPECT_EQ(Jpeg(samples::EditedExif({}, samples::EditedNote::kLost)).Find(), all);
    const Flaws table = {
        {Flaw::kNoMakerNote,
         "the JPEG's maker note has no white balance and f-number, and the DNG has none either"}};
    EXPECT_EQ(Jpeg(samples::EditedExif({}, samples::EditedNote::kValuesOutside)).Find(), table);
}

TEST(InputCheck, EachValueOfTheMakerNoteIsLookedAt) {
    const auto found = [](const samples::Entry& entry) {
        const auto flaws = Jpeg(WithNote(entry)).Find();
        return flaws.size() == 1 ? flaws.front().text : "";
    };
    const std::string start = "the JPEG's maker note has no ";
    const std::string end = ", and the DNG has none either";
    EXPECT_EQ(found(samples::Long(samples::note::kSerialNumber, 0)), start + "serial number" + end);
    EXPECT_EQ(found(samples::Long(samples::note::kSerialNumber, 1)), "");
    EXPECT_EQ(found(samples::Rationals(samples::note::kApproximateFNumber, {{1, 0}})),
              start + "f-number" + end);
    const std::string no_white_balance = start + "white balance" + end;
    for (const auto level :
         {samples::note::kLevelRed, samples::note::kLevelGreen, samples::note::kLevelBlue}) {
        EXPECT_EQ(found(samples::Rationals(level, {{1, 0}})), no_white_balance);
    }
}

TEST(InputCheck, WhatCannotBeReadIsLeftToItsConversion) {
    const support::TempFolder folder;
    EXPECT_EQ(FlawsOfPair(folder.prefix(), "L1"), Flaws{});
    EXPECT_EQ(FlawsOfCameraDng(folder / "L1.DNG"), Flaws{});
    support::WriteFile(folder / "L1.JPG", "no JPEG");
    EXPECT_EQ(FlawsOfPair(folder.prefix(), "L1"), Flaws{});
}

TEST(InputCheck, AGoodCameraDngHasNoFlaw) {
    MadeDng made;
    made.WriteCameraDng(support::FullCameraDng());
    EXPECT_EQ(FlawsOfCameraDng(made.folder / "L1.DNG"), Flaws{});
}

TEST(InputCheck, ACameraDngOfAnotherLengthIsNamed) {
    MadeDng made;
    made.WriteCameraDng(support::FullCameraDng());
    auto bytes = support::ReadFile(made.folder / "L1.DNG");
    bytes.pop_back();
    support::WriteFile(made.folder / "L1.DNG", bytes);
    EXPECT_EQ(FlawsOfCameraDng(made.folder / "L1.DNG"),
              (Flaws{{Flaw::kCameraDngOfLength, "the camera's DNG has 10575295 bytes instead of 10575296"}}));
}

TEST(InputCheck, ACameraDngWhoseFirstDirectoryMovedIsNamed) {
    const Flaws moved = {{Flaw::kMovedDirectory,
                          "another program has changed the camera's DNG, and the repair takes its old tags"}};
    MadeDng made;
    made.WriteCameraDng(support::FullCameraDng());
    const auto whole = support::ReadFile(made.folder / "L1.DNG");
    for (const std::size_t byte : {0U, 2U, 4U, 7U}) {
        auto bytes = whole;
        bytes[byte] ^= 4U;
        support::WriteFile(made.folder / "L1.DNG", bytes);
        EXPECT_EQ(FlawsOfCameraDng(made.folder / "L1.DNG"), moved);
    }
}

}  // namespace
