// SPDX-License-Identifier: MIT
// Checks repaired camera DNGs with other programs.
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/maker_note.h"
#include "samples/sample_card.h"
#include "samples/sample_databases.h"
#include "samples/white_balance.h"
#include "tests/end_to_end/exif_tool.h"
#include "tests/end_to_end/raw_developer.h"
#include "tests/end_to_end/sensor_camera.h"
#include "tests/end_to_end/tag_tables.h"
#include "tests/end_to_end/tiff_reader.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"

namespace end_to_end {

namespace {

constexpr std::uintmax_t kRawBytes = std::uintmax_t{2} * 3920 * 2638;
constexpr std::uintmax_t kPreviewBytes = 230400;

/// 12 s at ISO 640, two thirds above the meter's exposure, f/4 by the camera's estimate.
samples::Shot CameraShot(std::uint8_t lens_code) {
    samples::Shot shot;
    shot.software = "1.107";
    shot.exposure_time = {12000000, 1000000};
    shot.shutter_speed = {-229376, 65536};
    shot.exposure_bias = {43691, 65536};
    shot.iso = 640;
    shot.lens_code = lens_code;
    shot.external_light = {-98304, 65536};
    shot.measured_light = {-75366, 65536};
    shot.approximate_f_number = {262144, 65536};
    return shot;
}

/// A run on the camera's file and its effect on the tags.
struct RepairCase {
    const char* name = "";
    std::vector<std::string> options;
    bool dark_field = false;
    TagTexts lens_tags = {};  ///< in the EXIF IFD
    std::uint8_t lens_code = 33;
};

void PrintTo(const RepairCase& run, std::ostream* out) {
    *out << run.name;
}

std::vector<RepairCase> Runs() {
    const TagTexts summilux = {
        {33437, "rational64u[1] 262144/65536"},  // FNumber
        {37381, "rational64u[1] 970/1000"},      // MaxApertureValue
        {37386, "rational64u[1] 35000/1000"},    // FocalLength
        {41989, "int16u[1] 47"},                 // FocalLengthIn35mmFilm
        {42035, "string[6] Leica"},              // LensMake
        {42036, "string[28] Summilux-M 35mm f/1.4 ASPH."},
        {42037, "string[8] 1234567"},  // LensSerialNumber
    };
    // -98304 + 75366 + 285082 over 65536
    const TagTexts estimate = {{33437, "rational64u[1] 262144/65536"}};
    return {
        {.name = "Plain", .options = {}},
        {.name = "DarkField", .options = {"-s"}, .dark_field = true},
        {.name = "RowOffsets", .options = {"-sb"}, .dark_field = true},
        {.name = "TestedLines", .options = {"-st"}, .dark_field = true},
        {.name = "LensOfTheCamera", .options = {"-l"}, .lens_tags = summilux, .lens_code = 29},
        {.name = "LensOfTheUser", .options = {"-l", "011101"}, .lens_tags = summilux, .lens_code = 0},
        {.name = "UnknownLens", .options = {"-l"}, .lens_tags = estimate, .lens_code = 63},
        {.name = "Everything",
         .options = {"-s", "-l", "-p", "-b", "120", "-c"},
         .dark_field = true,
         .lens_tags = summilux,
         .lens_code = 29},
    };
}

/// The tags of IFD0: those of a converted file, except where this camera differs.
TagTexts ExpectedMain(const RepairCase& run, std::uintmax_t file_size) {
    TagTexts tags = MainTags();
    Merge(tags, PreviewTags());
    Merge(tags, StripTags());
    Merge(tags, {
                    {273, "int32u[1] " + std::to_string(file_size - kRawBytes - kPreviewBytes)},
                    {274, "int16u[1] 1"},                     // Orientation
                    {305, "string[6] 1.107"},                 // Software
                    {50706, "int8u[4] 1 0 0 0"},              // DNGVersion
                    {50708, "string[18] M8 Digital Camera"},  // UniqueCameraModel
                    {50721,                                   // ColorMatrix1
                     "rational64s[9] 10469/10000 -5314/10000 1280/10000 -4326/10000 12176/10000 2419/10000 "
                     "-886/10000 2473/10000 7160/10000"},
                    {50722,  // ColorMatrix2
                     "rational64s[9] 7675/10000 -2195/10000 -305/10000 -5860/10000 14118/10000 1857/10000 "
                     "-2425/10000 4007/10000 6578/10000"},
                });
    if (run.dark_field) {
        tags[316] = "string[10] velmarcon";  // HostComputer
    }
    return tags;
}

TagTexts ExpectedRawImage(std::uintmax_t file_size) {
    TagTexts tags = RawImageTags();
    Merge(tags, StripTags());
    Merge(tags, {
                    {256, "int32u[1] 3920"},  // ImageWidth
                    {257, "int32u[1] 2638"},  // ImageLength
                    {273, "int32u[1] " + std::to_string(file_size - kRawBytes)},
                    {278, "int32u[1] 2638"},         // RowsPerStrip
                    {279, "int32u[1] 20681920"},     // StripByteCounts
                    {50717, "int32u[1] 16383"},      // WhiteLevel
                    {50720, "int16u[2] 3916 2634"},  // DefaultCropSize
                });
    return tags;
}

TagTexts ExpectedExif(const RepairCase& run) {
    TagTexts tags = ExifTags();
    tags.erase(33437);  // FNumber: the camera writes none
    Merge(tags, {
                    {33434, "rational64u[1] 12000000/1000000"},  // ExposureTime
                    {34850, "int16u[1] 1"},                      // ExposureProgram
                    {36868, "string[20] 2007:08:02 22:13:49"},   // DateTimeDigitized
                    {37377, "rational64s[1] -229376/65536"},     // ShutterSpeedValue
                    {37380, "rational64s[1] 2/3"},               // ExposureBiasValue
                    {37383, "int16u[1] 2"},                      // MeteringMode
                    {37384, "int16u[1] 0"},                      // LightSource
                    {37385, "int16u[1] 0"},                      // Flash
                    {37386, "rational64u[1] 50000/1000"},        // FocalLength
                    {37500, "undef[220] -->"},                   // MakerNote
                    {41987, "int16u[1] 0"},                      // WhiteBalance
                    {41988, "rational64u[1] 0/1"},               // DigitalZoomRatio
                    {41989, "int16u[1] 67"},                     // FocalLengthIn35mmFilm
                    {41990, "int16u[1] 0"},                      // SceneCaptureType
                });
    Merge(tags, run.lens_tags);
    return tags;
}

TagTexts ExpectedMakerNote(const RepairCase& run) {
    TagTexts tags = MakerNoteTags();
    for (const int tag : {0x0300, 0x0322, 0x0323, 0x0324}) {  // JPEG files only
        tags.erase(static_cast<std::uint16_t>(tag));
    }
    Merge(tags, {
                    {0x0310, "int32u[1] " + std::to_string(4 * run.lens_code + 3)},
                    {0x0311, "rational64s[1] -98304/65536"},  // external light
                    {0x0312, "rational64s[1] -75366/65536"},  // measured light
                    {0x0313, "rational64u[1] 262144/65536"},  // approximate f-number
                });
    return tags;
}

/// Repairs a camera DNG from a card into a separate folder.
class RepairOf {
  public:
    explicit RepairOf(const std::vector<std::uint8_t>& camera_dng) {
        support::WriteFile(CameraPath(), camera_dng);
        std::filesystem::create_directory(camera_.card / "OUT");
        support::WriteFile(std::filesystem::path(camera_.Database()).parent_path() / "lensdb.ini",
                           samples::LensDatabase());
    }

    void WriteSensorDatabase(const std::string& text) const { support::WriteFile(camera_.Database(), text); }

    std::string CameraPath() const { return camera_.card / "L1000001.DNG"; }

    /// The path of the repaired file.
    std::string With(const std::vector<std::string>& options) const {
        std::vector<std::string> arguments = {"-i", camera_.card.folder(), "-o", "OUT"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const support::Outcome outcome = camera_.Run(arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.output, "\nImage: L1000001.DNG\n\n");
        EXPECT_EQ(outcome.errors, "");
        return camera_.card / "OUT/L1000001.DNG";
    }

  private:
    SensorCamera camera_;
};

class RepairedFile : public testing::TestWithParam<RepairCase> {
  protected:
    /// The path of the file that the test's run wrote.
    std::string Repaired() const {
        repair_.WriteSensorDatabase(Section() + Lines({124, 10, 124, 2646}) + Levels(5));
        return repair_.With(GetParam().options);
    }

  private:
    RepairOf repair_{samples::Serialize(support::FullCameraDng(CameraShot(GetParam().lens_code)))};
};

TEST_P(RepairedFile, HasExactlyTheTagsOfTheRun) {
    const RepairCase& run = GetParam();
    const std::string path = Repaired();
    const auto size = std::filesystem::file_size(path);
    ExpectTags(ReadTags(path), {{"IFD0", ExpectedMain(run, size)},
                                {"SubIFD", ExpectedRawImage(size)},
                                {"ExifIFD", ExpectedExif(run)},
                                {"MakerNotes", ExpectedMakerNote(run)}});
}

TEST_P(RepairedFile, IsAsValidAsTheCamerasOwn) {
    // The camera keeps these TIFF/EP tags in IFD0.
    const std::vector<std::string> known = {
        "Non-standard IFD0 tag 0x882b SelfTimerMode",
        "Non-standard IFD0 tag 0x920e FocalPlaneXResolution",
        "Non-standard IFD0 tag 0x920f FocalPlaneYResolution",
        "Non-standard IFD0 tag 0x9210 FocalPlaneResolutionUnit",
        "Wrong IFD for 0x9003 DateTimeOriginal (should be ExifIFD not IFD0)",
    };
    EXPECT_EQ(Complaints(Repaired()), known);
}

INSTANTIATE_TEST_SUITE_P(Runs, RepairedFile, testing::ValuesIn(Runs()), testing::PrintToStringParamName());

/// A DNG for which the camera estimated f/5.95.
samples::CameraDngFile DngAtFiveNinetyFive(std::uint8_t lens_code, samples::NoteLayout layout) {
    samples::Shot shot = CameraShot(lens_code);
    shot.external_light = {-98304, 65536};
    shot.measured_light = {-203162, 65536};
    auto file = support::FullCameraDng(shot);
    samples::Set(file.exif, samples::Undefined(37500, samples::DngMakerNote(shot, layout)));
    return file;
}

class RepairedNote : public testing::TestWithParam<samples::NoteLayout> {};

TEST_P(RepairedNote, GivesTheNearestApertureOfTheLens) {
    const RepairOf repair(samples::Serialize(DngAtFiveNinetyFive(33, GetParam())));
    EXPECT_EQ(ReadTags(repair.With({"-l"}))["ExifIFD"][33437], "rational64u[1] 367002/65536");
    EXPECT_EQ(PrintedTag(repair.With({"-l", "-r"}), "FNumber"), "5.6");
}

TEST_P(RepairedNote, GivesTheCamerasEstimateWithoutALens) {
    const RepairOf repair(samples::Serialize(DngAtFiveNinetyFive(63, GetParam())));
    // -98304 + 203162 + 285082
    EXPECT_EQ(ReadTags(repair.With({"-l"}))["ExifIFD"][33437], "rational64u[1] 389940/65536");
    EXPECT_EQ(PrintedTag(repair.With({"-l", "-r"}), "FNumber#").substr(0, 4), "5.95");
}

TEST_P(RepairedNote, IsReadByExiftool) {
    const RepairOf repair(samples::Serialize(DngAtFiveNinetyFive(33, GetParam())));
    TagTexts note = ReadTags(repair.With({}))["MakerNotes"];
    EXPECT_EQ(note[0x0311], "rational64s[1] -98304/65536");
    EXPECT_EQ(note[0x0312], "rational64s[1] -203162/65536");
    EXPECT_EQ(note[0x0313], "rational64u[1] 262144/65536");
}

// The camera's layout and the layouts of files written by other programs.
INSTANTIATE_TEST_SUITE_P(
    Layouts, RepairedNote,
    testing::Values(samples::kDngNoteLayout, samples::NoteLayout{.base = 0, .gap = false},
                    samples::kJpegNoteLayout, samples::NoteLayout{.base = 8, .gap = false}),
    [](const auto& layout) {
        return "Base" + std::to_string(layout.param.base) + (layout.param.gap ? "" : "Packed");
    });

TEST(RepairedWhiteBalance, IsTheCameras) {
    for (const samples::WhiteBalance& balance : samples::kWhiteBalances) {
        samples::Shot shot = CameraShot(33);
        samples::SetWhiteBalance(shot, balance);
        const RepairOf repair(samples::Serialize(support::FullCameraDng(shot)));
        EXPECT_EQ(ReadTags(repair.With({}))["IFD0"][50728],
                  "rational64u[3] 16384/" + std::to_string(balance.red) + " 16384/16384 16384/" +
                      std::to_string(balance.blue))
            << balance.name;
    }
}

TEST(RepairedPixels, AreReadByLibTiffWithoutWarnings) {
    const RepairOf repair(samples::Serialize(support::FullCameraDng()));
    const TiffReader reader(repair.With({"-l"}));
    ASSERT_NE(reader.file(), nullptr);
    EXPECT_EQ(reader.Kind(), (ImageKind{320, 240, 8, 3, PHOTOMETRIC_RGB}));
    EXPECT_TRUE(reader.Strip<std::uint8_t>() == support::CameraPreview());
    reader.GoToSubIFD();
    EXPECT_EQ(reader.Kind(), (ImageKind{3920, 2638, 16, 1, PHOTOMETRIC_CFA}));
    EXPECT_TRUE(reader.Strip<std::uint16_t>() == support::CameraLevels(3920, 2638));
    EXPECT_EQ(TiffReader::Complaints(), std::vector<std::string>());
}

TEST(RepairedPixels, AreTheCamerasThroughItsTable) {
    const RepairOf repair(samples::Serialize(support::FullCameraDng()));
    const UnpackedRaw raw = Unpack(repair.With({}));
    EXPECT_EQ(raw.width, 3920);
    EXPECT_EQ(raw.height, 2638);
    EXPECT_TRUE(raw.pixels == support::CameraLevels(3920, 2638));
    EXPECT_TRUE(raw.thumbnail == support::CameraPreview());
}

/// A camera DNG that has been corrected before, so that no dither is involved.
std::vector<std::uint8_t> CorrectedCameraDng() {
    auto camera = support::FullCameraDng();
    samples::Set(camera.ifd0, samples::Ascii(316, "velmarcon"));
    return samples::Serialize(camera);
}

TEST(RepairedPixels, AreInterpolatedInTheListedColumns) {
    const RepairOf repair(CorrectedCameraDng());
    repair.WriteSensorDatabase(Section() + Lines({124, 10, 124, 2646, 3001, 2000, 3001, 5000}));
    auto expected = support::CameraLevels(3920, 2638);
    support::InterpolateColumn(expected, 3920, 100, 4);
    support::InterpolateColumn(expected, 3920, 2977, 1994);
    EXPECT_TRUE(Unpack(repair.With({"-s"})).pixels == expected);
}

TEST(RepairedPixels, AreWhiteInTheListedColumnsWithTheTestOption) {
    const RepairOf repair(CorrectedCameraDng());
    repair.WriteSensorDatabase(Section() + Lines({124, 10, 124, 2646, 3001, 2000, 3001, 2500}));
    auto expected = support::CameraLevels(3920, 2638);
    for (std::size_t row = 0; row < 2638; ++row) {
        expected[row * 3920 + 100] = row >= 4 ? 16383 : expected[row * 3920 + 100];
        // The end row of a cropped frame's defect is not moved.
        expected[row * 3920 + 2977] = row >= 1994 && row < 2500 ? 16383 : expected[row * 3920 + 2977];
    }
    EXPECT_TRUE(Unpack(repair.With({"-st"})).pixels == expected);
}

TEST(RepairedPixels, AreReducedByTheLevelOfTheirColumnTimesTheIsoGain) {
    const RepairOf repair(samples::Serialize(support::FullCameraDng(CameraShot(33))));
    repair.WriteSensorDatabase(Section() + Levels(5));
    auto expected = support::CameraLevels(3920, 2638);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto level = static_cast<std::uint16_t>(4 * ((i % 3920 + 23) % 5));
        expected[i] = expected[i] > level ? static_cast<std::uint16_t>(expected[i] - level) : 0;
    }
    ExpectPixels(Unpack(repair.With({"-s"})).pixels, expected);
}

TEST(RepairedPicture, DevelopsLikeTheCamerasOwn) {
    const support::TempFolder card;
    ASSERT_EQ(samples::WriteCard(card.path().string(), {.pairs = 0, .dng = true}), "");
    const RepairOf repair(support::ReadFile(card / "L1000001.DNG"));
    const DevelopedRaw camera(repair.CameraPath());
    const DevelopedRaw repaired(repair.With({}));
    EXPECT_LT(repaired.MeanDifference(camera), 1.0);
    // The picture must not be black: this is the scene's grey ground.
    EXPECT_GT(repaired.Mean(0, 0, 3920, 2638).at(1), 0.05F);
}

}  // namespace

}  // namespace end_to_end
