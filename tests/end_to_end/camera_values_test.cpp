// SPDX-License-Identifier: MIT
// Values as the camera's own JPEGs hold them, read from the converted DNG with exiftool.
#include <cstdint>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "samples/sample_databases.h"
#include "samples/white_balance.h"
#include "tests/end_to_end/exif_tool.h"
#include "tests/end_to_end/write_dng.h"
#include "tests/support/files.h"
#include "tests/support/program.h"
#include "tests/support/test_pair.h"

namespace end_to_end {

namespace {

/// The tags of the DNG made from a pair with the metadata of `exif`.
TagsOfFile Converted(const samples::ExifBlock& exif) {
    const support::TempFolder folder;
    support::WritePair(folder.path().string(), kBase, exif);
    return ReadTags(WriteDng(folder, {}));
}

TEST(CameraValues, TheShutterSpeedOfTheJpegIsKept) {
    constexpr std::uint16_t shutter_speed = 37377;
    samples::Shot shot;
    EXPECT_EQ(Converted(samples::CameraExif(shot))["ExifIFD"][shutter_speed], "rational64s[1] 524288/65536");
    shot.shutter_speed = {-229376, 65536};
    EXPECT_EQ(Converted(samples::CameraExif(shot))["ExifIFD"][shutter_speed], "rational64s[1] -229376/65536");
}

/// An exposure bias as the camera stores it, and as the DNG holds it.
struct Bias {
    std::int32_t camera;  ///< in units of 1/65536
    const char* dng;
};

TEST(CameraValues, TheExposureBiasIsInThirdsAndNegativeOnesAreAThirdNearerToZero) {
    constexpr std::uint16_t exposure_bias = 37380;
    for (const Bias& bias : {Bias{0, "0/3"},
                             {21845, "1/3"},
                             {43691, "2/3"},
                             {65536, "3/3"},
                             {-21845, "0/3"},
                             {-43691, "-1/3"},
                             {-65536, "-2/3"},
                             {-131072, "-5/3"}}) {
        samples::Shot shot;
        shot.exposure_bias = {bias.camera, 65536};
        EXPECT_EQ(Converted(samples::CameraExif(shot))["ExifIFD"][exposure_bias],
                  std::string("rational64s[1] ") + bias.dng);
    }
}

TEST(CameraValues, EachWhiteBalanceBecomesAsShotNeutral) {
    constexpr std::uint16_t as_shot_neutral = 50728;
    for (const samples::WhiteBalance& balance : samples::kWhiteBalances) {
        samples::Shot shot;
        samples::SetWhiteBalance(shot, balance);
        EXPECT_EQ(Converted(samples::CameraExif(shot))["IFD0"][as_shot_neutral],
                  "rational64u[3] 16384/" + std::to_string(balance.red) + " 16384/16384 16384/" +
                      std::to_string(balance.blue))
            << balance.name;
    }
}

/// The values in a DNG that come only from the maker note.
struct NoteValues {
    std::string serial_number;
    std::string neutral;
    std::string f_number;

    friend bool operator==(const NoteValues&, const NoteValues&) = default;
};

void PrintTo(const NoteValues& values, std::ostream* out) {
    *out << values.serial_number << "; " << values.neutral << "; " << values.f_number;
}

NoteValues NoteValuesOf(const samples::ExifBlock& exif) {
    TagsOfFile tags = Converted(exif);
    return {.serial_number = tags["IFD0"][50735],
            .neutral = tags["IFD0"][50728],
            .f_number = tags["ExifIFD"][33437]};
}

// None of this is an error: a JPEG without a maker note simply lacks these values.
TEST(EditedJpeg, WithoutMakerNoteLosesSerialNumberWhiteBalanceAndFNumber) {
    EXPECT_EQ(NoteValuesOf(samples::EditedExif({}, samples::EditedNote::kLost)),
              (NoteValues{.serial_number = "string[2] 0",
                          .neutral = "rational64u[3] 0/0 0/0 0/0",
                          .f_number = "rational64u[1] 285082/0"}));
}

TEST(EditedJpeg, WithNoteValuesOutsideKeepsTheValuesInTheNotesTable) {
    EXPECT_EQ(NoteValuesOf(samples::EditedExif({}, samples::EditedNote::kValuesOutside)),
              (NoteValues{.serial_number = "string[8] 3106091",
                          .neutral = "rational64u[3] 0/0 0/0 0/0",
                          .f_number = "rational64u[1] 285082/0"}));
}

TEST(EditedJpeg, WithNoteValuesOutsideStillNamesItsLens) {
    const support::TempFolder folder;
    support::WriteFile(folder / "lensdb.ini", samples::LensDatabase());
    support::WritePair(folder.path().string(), kBase,
                       samples::EditedExif({}, samples::EditedNote::kValuesOutside));
    TagTexts tags = ReadTags(WriteDng(folder, {"-l"}))["ExifIFD"];
    EXPECT_EQ(tags[42036], "string[21] Summicron-M 50mm f/2");
    EXPECT_EQ(tags[33437], "rational64u[1] 262144/0") << "the aperture nearest to an estimate of 285082";
}

TEST(EditedJpeg, WithoutMakerNoteHasNoLens) {
    const support::TempFolder folder;
    support::WriteFile(folder / "lensdb.ini", samples::LensDatabase());
    support::WritePair(folder.path().string(), kBase, samples::EditedExif({}, samples::EditedNote::kLost));
    const support::Outcome outcome =
        support::RunProgram(VELMARCON_PROGRAM, {"-i", folder.prefix(), "-l"}, {.name = folder / "velmarcon"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "\nImage: L1000001.RAW\n\nError #0013: Lens could not be detected.\n");
}

}  // namespace

}  // namespace end_to_end
