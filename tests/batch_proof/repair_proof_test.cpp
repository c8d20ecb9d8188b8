// SPDX-License-Identifier: MIT
// Repaired DNGs.
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "batch/proof/dng_proof.h"
#include "batch/proof/tag_name.h"
#include "samples/sample_databases.h"
#include "samples/sensor_dump.h"
#include "tests/batch_proof/made_dng.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tests/support/tiff_file.h"
#include "tiff/tags.h"

namespace {

constexpr int kHeight = 8;  // rows; of full width, as the corrections ask for

void AskFor(RunSettings& settings) {
    settings.sensor_fix = true;
    settings.dark_field_fix = true;
}

/// With a column that is defective from row 4 on, and levels.
std::string Database(const std::string& level) {
    std::string text = "[3106091]\nLine=124\nLine=10\nLine=124\nLine=5000\n";
    for (int x = 0; x < samples::kSensorWidth; ++x) {
        text += "LevelCorrection=" + level + "\n";
    }
    return text;
}

TEST(RepairProof, AcceptsWhatEachOptionMakes) {
    const std::vector<std::function<void(RunSettings&)>> options = {
        [](RunSettings&) {},
        [](RunSettings& settings) {
            settings.preview = true;
            settings.black_level_given = true;
            settings.raw_model_variant = true;
        },
        [](RunSettings& settings) { settings.lens_fix = true; },
        [](RunSettings& settings) {
            settings.lens_fix = true;
            settings.lens_code = "100001";
        },
        [](RunSettings& settings) { AskFor(settings); },
        [](RunSettings& settings) {
            AskFor(settings);
            settings.pixel_line_test = true;
        },
        [](RunSettings& settings) {
            AskFor(settings);
            settings.row_offset_estimation = true;
        },
        [](RunSettings& settings) {
            AskFor(settings);
            settings.dark_field_creation = true;
        }};
    samples::Shot uncoded;
    uncoded.lens_code = 0;
    uncoded.iso = 2500;
    uncoded.exposure_bias = {-65536, 65536};
    uncoded.exposure_time = {166, 1000000};
    for (const auto& shot : {samples::Shot(), uncoded}) {
        MadeDng made;
        made.WriteCameraDng(support::SmallCameraDng(samples::kCroppedWidth, kHeight, shot));
        made.WriteLensDatabase();
        for (const bool database : {false, true}) {
            if (database) {
                made.WriteSensorDatabase(Database("2.5"));
            }
            for (const auto& option : options) {
                made.settings = {};
                option(made.settings);
                made.Make();
                EXPECT_EQ(made.Check(), "");
            }
        }
    }
}

TEST(RepairProof, ComparesAFileOfFullSize) {
    MadeDng made;
    made.WriteCameraDng(support::FullCameraDng());
    made.Make();
    EXPECT_EQ(made.Check(), "");
    const auto value = made.Pixel(3919, 2637);
    made.SetPixel(3919, 2637, static_cast<std::uint16_t>(value + 1));
    EXPECT_EQ(made.Check(), "does not match the camera's DNG: pixel 3919 of row 2637 is " +
                                std::to_string(value + 1) + " instead of " + std::to_string(value));
}

TEST(RepairProof, AcceptsAFileThatWasRepairedBefore) {
    MadeDng made;
    AskFor(made.settings);
    made.WriteSensorDatabase(Database("2.5"));
    made.WriteCameraDng(support::SmallCameraDng(samples::kCroppedWidth, kHeight));
    made.Make();
    support::WriteFile(made.folder / "L1.DNG", made.bytes);
    made.Make();
    EXPECT_EQ(made.Check(), "");
    made.SetPixel(7, 7, static_cast<std::uint16_t>(made.Pixel(7, 7) - 1));
    EXPECT_EQ(made.Check().substr(0, 50), "does not match the camera's DNG: pixel 7 of row 7 ");
}

TEST(RepairProof, AcceptsAFileWithoutTheDirectoriesThatARepairDoesNotKeep) {
    MadeDng made;
    auto camera = support::SmallCameraDng(12, kHeight);
    samples::Set(camera.ifd0, samples::Long(tag::kGPSIFD, 8));
    samples::Set(camera.exif, samples::Long(tag::kInteroperabilityIFD, 8));
    made.WriteCameraDng(camera);
    made.Make();
    EXPECT_EQ(made.Check(), "");
}

TEST(RepairProof, LetsAPixelLoseItsLevelOrOneMore) {
    MadeDng made;
    AskFor(made.settings);
    made.WriteSensorDatabase(Database("2.5"));
    made.WriteCameraDng(support::SmallCameraDng(samples::kCroppedWidth, kHeight));
    made.Make();
    const int level = support::CameraLevel(support::CameraByte(7, 7));
    for (const int less : {2, 3}) {
        made.SetPixel(7, 7, static_cast<std::uint16_t>(level - less));
        EXPECT_EQ(made.Check(), "");
    }
    made.SetPixel(7, 7, static_cast<std::uint16_t>(level - 1));
    EXPECT_EQ(made.Check(), "does not match the camera's DNG: pixel 7 of row 7 is " +
                                std::to_string(level - 1) + " instead of " + std::to_string(level - 3) +
                                " or " + std::to_string(level - 2));
}

TEST(RepairProof, FindsEveryTagThatDiffers) {
    MadeDng made;
    made.settings.lens_fix = true;
    made.WriteLensDatabase();
    made.WriteCameraDng(support::SmallCameraDng(12, kHeight));
    made.Make();
    const auto file = made.file();
    const auto ifd0 = file.FirstIFD();
    for (const auto& ifd : {ifd0, file.ReadIFD(ifd0.At(tag::kSubIFDs).Number()),
                            file.ReadIFD(ifd0.At(tag::kExifIFD).Number())}) {
        for (const auto& [tag, entry] : ifd.entries) {
            if (tag == tag::kStripOffsets || tag == tag::kSubIFDs || tag == tag::kExifIFD) {
                continue;
            }
            made.Flip(entry.offset, 1U);
            EXPECT_EQ(made.Check(), "does not match the camera's DNG: tag " + TagName(tag) + " differs");
            made.Flip(entry.offset, 1U);
        }
    }
    EXPECT_EQ(made.Check(), "");
}

TEST(RepairProof, FindsAByteOfThePreviewThatDiffers) {
    MadeDng made;
    made.WriteCameraDng(support::SmallCameraDng(12, kHeight));
    made.Make();
    made.Flip(made.file().FirstIFD().At(tag::kStripOffsets).Number() + 230399, 1U);
    EXPECT_EQ(made.Check(), "does not match the camera's DNG: its preview differs");
}

TEST(RepairProof, FindsTheRepairOfAnotherDng) {
    MadeDng made;
    made.WriteCameraDng(support::SmallCameraDng(12, kHeight));
    made.Make();
    samples::Shot other;
    other.image_unique_id = "00000000000000000000000000000002";
    made.WriteCameraDng(support::SmallCameraDng(12, kHeight, other));
    EXPECT_EQ(made.Check(), "does not match the camera's DNG: tag ImageUniqueID differs");
}

TEST(RepairProof, SaysThatTheCameraDngCannotBeRead) {
    MadeDng made;
    made.WriteCameraDng(support::SmallCameraDng(12, kHeight));
    made.Make();
    const auto camera = support::ReadFile(made.folder / "L1.DNG");
    for (const std::size_t length : {0U, 100U, 5000U}) {
        support::WriteFile(made.folder / "L1.DNG", std::span(camera).first(length));
        EXPECT_EQ(made.Check(), "cannot be compared with the camera's DNG, which cannot be read");
    }
    std::filesystem::remove(made.folder / "L1.DNG");
    EXPECT_EQ(made.Check(), "cannot be compared with the camera's DNG, which cannot be read");
}

}  // namespace
