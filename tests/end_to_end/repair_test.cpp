// SPDX-License-Identifier: MIT
// Repairs camera DNGs with the whole program: which files are accepted, the messages, and the resulting
// files.
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/sample_databases.h"
#include "tests/end_to_end/card.h"
#include "tests/end_to_end/sensor_camera.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tests/support/program.h"
#include "tiff/tags.h"

namespace {

using end_to_end::Levels;
using end_to_end::Lines;
using end_to_end::RawPixels;
using end_to_end::Section;
using end_to_end::SensorCamera;
using Bytes = std::vector<std::uint8_t>;
using Names = std::vector<std::string>;

/// A camera DNG of full size.
const Bytes& FullDng() {
    static const Bytes bytes = samples::Serialize(support::FullCameraDng());
    return bytes;
}

/// A small one, but wide enough for every correction.
constexpr int kWidth = 3920;
constexpr int kHeight = 4;

Bytes SmallDng(const samples::Shot& shot = {}) {
    return samples::Serialize(support::SmallCameraDng(kWidth, kHeight, shot));
}

/// A card with L1000001.DNG and an empty folder OUT.
class Repair : public testing::Test {
  protected:
    explicit Repair() { std::filesystem::create_directory(camera_.card / "OUT"); }

    std::string Path(const std::string& name = "L1000001.DNG") const { return camera_.card / name; }
    std::string ProgramFolder() const {
        return std::filesystem::path(camera_.Database()).parent_path().string();
    }
    Names Written() const { return support::Names(Path("OUT")); }
    std::vector<std::uint16_t> Pixels() const { return camera_.Pixels("OUT/L1000001"); }

    /// Runs the program on L1000001.DNG with output to OUT.
    std::string RunOnIt(std::vector<std::string> options) const {
        options.insert(options.begin(), {"-i", "L1000001.DNG", "-o", "OUT"});
        return RunWith(options);
    }

    /// Runs the program, which must end with `status`. Returns what it prints.
    std::string RunWith(const std::vector<std::string>& arguments, int status = 0) const {
        const auto outcome = camera_.Run(arguments);
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.errors, "");
        return outcome.output;
    }

    SensorCamera camera_;
};

const std::string kHeader = "\nImage: L1000001.DNG\n\n";
const std::string kReadVerbosely = kHeader + "Reading DNG Image...Done\n";
const std::string kWrittenVerbosely = "Writing DNG header...Done!\nWriting image data...Done!\n";

// --- Which files

TEST_F(Repair, OfAFolderTakesFilesOfTheCameraSize) {
    Bytes shorter = FullDng();
    shorter.pop_back();
    Bytes longer = FullDng();
    longer.push_back(0);
    support::WriteFile(Path("A.DNG"), shorter);
    support::WriteFile(Path("B.DNG"), longer);
    support::WriteFile(Path("C.dng"), FullDng());
    support::WriteFile(Path(), FullDng());
    EXPECT_EQ(RunWith({"-i", camera_.card.folder(), "-o", "OUT"}), kHeader);
    EXPECT_EQ(Written(), Names{"L1000001.DNG"});
    EXPECT_TRUE(Pixels() == support::CameraLevels(3920, 2638));
}

TEST_F(Repair, IsNotDoneWithoutAnInput) {
    support::WriteFile(Path(), FullDng());
    EXPECT_EQ(RunWith({"-r", "-o", "OUT"}, 1).substr(0, 20), "###################\n");
    EXPECT_TRUE(Written().empty());
}

TEST_F(Repair, NeverTakesAFileThatTheProgramWrote) {
    support::WriteFile(Path(), FullDng());
    RunWith({"-i", camera_.card.folder(), "-o", "OUT"});
    EXPECT_EQ(RunWith({"-i", "OUT", "-r"}, 5), "Error #0005: No RAW files found in folder.\n");
    EXPECT_EQ(RunWith({"-i", "OUT/L1000001", "-r"}, 19),
              "L1000001.DNG: Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.\n");
}

TEST_F(Repair, OfASingleFileTakesItsNameWithOrWithoutExtension) {
    support::WriteFile(Path(), SmallDng());
    for (const std::string input : {"L1000001", "L1000001.DNG"}) {
        EXPECT_EQ(RunWith({"-i", input, "-o", "OUT"}), kHeader);
        EXPECT_TRUE(std::filesystem::remove(Path("OUT/L1000001.DNG")));
    }
}

TEST_F(Repair, ContinuesAmongPairsAndBrokenFiles) {
    Bytes broken = FullDng();
    std::fill_n(broken.begin() + 8, 500, std::uint8_t{0});
    support::WriteFile(Path("L1000002.DNG"), broken);
    support::WriteFile(Path(), FullDng());
    camera_.card.AddPair("L1000003");
    const std::string output = RunWith({"-i", camera_.card.folder(), "-o", "OUT"});
    EXPECT_EQ(Written(), (Names{"L1000001.DNG", "L1000003.DNG"}));
    EXPECT_NE(output.find("L1000002.DNG\n\n"
                          "L1000002.DNG: Error #0019: File was created from RAW+JPG or is not a Leica M8 "
                          "DNG.\n"
                          "Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.\n"),
              std::string::npos)
        << output;
}

// --- Where the repaired file goes

TEST_F(Repair, IntoAnotherFolderDoesNotChangeTheInput) {
    support::WriteFile(Path(), FullDng());
    EXPECT_EQ(RunOnIt({}), kHeader);
    EXPECT_TRUE(support::ReadFile(Path()) == FullDng());
    EXPECT_EQ(support::Names(camera_.card.folder()), (Names{"L1000001.DNG", "OUT"}));
}

TEST_F(Repair, OverItselfNeedsRefresh) {
    support::WriteFile(Path(), FullDng());
    const std::string exists = kHeader + "File L1000001.DNG already exists!\n";
    EXPECT_EQ(RunWith({"-i", "L1000001.DNG"}), exists);
    EXPECT_EQ(RunWith({"-i", camera_.card.folder(), "-v"}), exists);
    EXPECT_TRUE(support::ReadFile(Path()) == FullDng());

    EXPECT_EQ(RunWith({"-i", "L1000001.DNG", "-r", "-v"}), kReadVerbosely + kWrittenVerbosely);
    EXPECT_TRUE(RawPixels(camera_.card.Dng("L1000001")) == support::CameraLevels(3920, 2638));
    EXPECT_EQ(support::Names(camera_.card.folder()), (Names{"L1000001.DNG", "OUT"}));
}

TEST_F(Repair, OverItselfThatIsRefusedDoesNotChangeTheFile) {
    Bytes damaged = SmallDng();
    damaged.pop_back();
    support::WriteFile(Path(), damaged);
    EXPECT_EQ(RunWith({"-i", "L1000001.DNG", "-r"}),
              kHeader + "L1000001.DNG: Error #0017: Damaged DNG file.\nError #0017: Damaged DNG file.\n");
    EXPECT_TRUE(support::ReadFile(Path()) == damaged);
}

TEST_F(Repair, OverItselfThatDoesNotFitOnTheDiskDoesNotChangeTheFile) {
    support::WriteFile(Path(), FullDng());
    const auto outcome = support::RunProgram(VELMARCON_PROGRAM, {"-i", "L1000001.DNG", "-r"},
                                             {.folder = camera_.card.folder(), .largest_file = 15000000});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, kHeader + "L1000001.DNG: DNG not written: File too large\n");
    EXPECT_TRUE(support::ReadFile(Path()) == FullDng());
    EXPECT_EQ(support::Names(camera_.card.folder()), (Names{"L1000001.DNG", "OUT"}));
}

TEST_F(Repair, OfAReadOnlyFileIntoAnotherFolderIsWritten) {
    support::WriteFile(Path(), SmallDng());
    std::filesystem::permissions(Path(), std::filesystem::perms::owner_read);
    EXPECT_EQ(RunOnIt({}), kHeader);
    EXPECT_TRUE(Pixels() == support::CameraLevels(kWidth, kHeight));
}

// --- IFDs that a repair does not keep

constexpr std::uint32_t kGpsOffset = 3000;  // anywhere in the file

/// A DNG whose IFD0 has a pointer to a GPS IFD.
Bytes GeotaggedDng() {
    auto camera = support::SmallCameraDng(kWidth, kHeight);
    samples::Set(camera.ifd0, samples::Long(tag::kGPSIFD, kGpsOffset));
    return samples::Serialize(camera);
}

std::string NotWritten(const std::string& path, const std::string& contents) {
    return kHeader + path + ": DNG not written: it holds " + contents +
           ", which a repair does not keep; name another folder\n";
}

TEST_F(Repair, OverItselfThatWouldLoseGpsDataIsRefused) {
    support::WriteFile(Path(), GeotaggedDng());
    EXPECT_EQ(RunWith({"-i", "L1000001.DNG", "-r"}), NotWritten("L1000001.DNG", "GPS data"));
    EXPECT_TRUE(support::ReadFile(Path()) == GeotaggedDng());
}

TEST_F(Repair, OverItselfThatWouldLoseInteroperabilityDataIsRefused) {
    auto camera = support::SmallCameraDng(kWidth, kHeight);
    samples::Set(camera.exif, samples::Long(tag::kInteroperabilityIFD, kGpsOffset));
    const Bytes bytes = samples::Serialize(camera);
    support::WriteFile(Path(), bytes);
    EXPECT_EQ(RunWith({"-i", "L1000001.DNG", "-r"}), NotWritten("L1000001.DNG", "interoperability data"));
    EXPECT_TRUE(support::ReadFile(Path()) == bytes);
}

TEST_F(Repair, RecognisesItsOwnFolderByAnyPath) {
    support::WriteFile(Path(), GeotaggedDng());
    std::filesystem::create_directory_symlink(".", Path("link"));
    for (const std::string folder : {"./", "OUT/../", "link/"}) {
        EXPECT_EQ(RunWith({"-i", "L1000001.DNG", "-o", folder, "-r"}),
                  NotWritten(folder + "L1000001.DNG", "GPS data"));
    }
    EXPECT_TRUE(support::ReadFile(Path()) == GeotaggedDng());
}

TEST_F(Repair, IntoAnotherFolderDropsPointersToGpsAndInteroperabilityData) {
    support::WriteFile(Path(), SmallDng());
    EXPECT_EQ(RunOnIt({}), kHeader);
    const Bytes without = support::ReadFile(Path("OUT/L1000001.DNG"));

    auto camera = support::SmallCameraDng(kWidth, kHeight);
    for (auto* ifd : {&camera.ifd0, &camera.raw_ifd, &camera.exif}) {
        samples::Set(*ifd, samples::Long(tag::kGPSIFD, kGpsOffset));
        samples::Set(*ifd, samples::Long(tag::kInteroperabilityIFD, kGpsOffset));
    }
    support::WriteFile(Path(), samples::Serialize(camera));
    EXPECT_EQ(RunOnIt({"-r"}), kHeader);
    EXPECT_TRUE(support::ReadFile(Path("OUT/L1000001.DNG")) == without);
}

TEST_F(Repair, OfAFileWhoseExifIfdHoldsOnlyAnInteroperabilityPointerIsRefused) {
    auto camera = support::SmallCameraDng(kWidth, kHeight);
    camera.exif = {samples::Long(tag::kInteroperabilityIFD, kGpsOffset)};
    support::WriteFile(Path(), samples::Serialize(camera));
    EXPECT_EQ(RunOnIt({}),
              kHeader + "L1000001.DNG: Error #0017: Damaged DNG file.\nError #0017: Damaged DNG file.\n");
    EXPECT_TRUE(Written().empty());
}

TEST_F(Repair, OfAFileGeotaggedByExifToolIsRefusedInPlaceAndWrittenElsewhere) {
    support::WriteFile(Path(), FullDng());
    const auto tagged = support::RunProgram(
        "exiftool", {"-q", "-overwrite_original", "-GPSLatitude=48.14", "-GPSLatitudeRef=N", Path()},
        {.through_path = true});
    ASSERT_EQ(tagged.status, 0) << tagged.errors;
    const Bytes original = support::ReadFile(Path());
    EXPECT_EQ(RunWith({"-i", "L1000001.DNG", "-r"}), NotWritten("L1000001.DNG", "GPS data"));
    EXPECT_TRUE(support::ReadFile(Path()) == original);
    EXPECT_EQ(RunOnIt({}), kHeader);
    const auto dng = camera_.card.Dng("OUT/L1000001");
    EXPECT_FALSE(dng.FirstIFD().Has(tag::kGPSIFD));
    EXPECT_TRUE(Pixels() == support::CameraLevels(3920, 2638));
}

// --- Messages

TEST_F(Repair, ReportsADamagedFileTwice) {
    Bytes damaged = SmallDng();
    damaged.pop_back();
    support::WriteFile(Path(), damaged);
    const std::string errors =
        "L1000001.DNG: Error #0017: Damaged DNG file.\nError #0017: Damaged DNG file.\n";
    EXPECT_EQ(RunOnIt({}), kHeader + errors);
    EXPECT_EQ(RunOnIt({"-v", "-s"}), kHeader + "Reading DNG Image..." + errors);
    EXPECT_TRUE(Written().empty());
}

TEST_F(Repair, NamesItsStepsWhenVerbose) {
    support::WriteFile(Path(), SmallDng());
    support::WriteFile(camera_.Database(), Section() + Lines({124, 0, 124, 5000}) + Levels(5));
    EXPECT_EQ(RunOnIt({"-v", "-s"}), kReadVerbosely +
                                         "Fixing pixel errors...Done!\n"
                                         "Fixing sensor dark field...Done!\n" +
                                         kWrittenVerbosely);
}

TEST_F(Repair, ReportsAMissingSensorDatabaseOnce) {
    support::WriteFile(Path(), SmallDng());
    EXPECT_EQ(RunOnIt({"-s"}), kHeader + "Error #0014: No Sensor database found.\n");
    EXPECT_TRUE(Pixels() == support::CameraLevels(kWidth, kHeight));
}

TEST_F(Repair, CannotMakeADarkReference) {
    support::WriteFile(Path(), SmallDng());
    const std::string refusal = "Error #0018: Darkfield estimation not possible from DNG file.\n";
    EXPECT_EQ(RunOnIt({"-sd"}),
              kHeader + refusal + "No dark field correction values available for camera No.3106091.\n");
    EXPECT_FALSE(std::filesystem::exists(camera_.Database()));
    const std::string database = Section() + Lines({124, 0, 124, 5000}) + Levels(5);
    support::WriteFile(camera_.Database(), database);
    EXPECT_EQ(RunOnIt({"-sd", "-r", "-v"}), kReadVerbosely + "Fixing pixel errors...Done!\n" + refusal +
                                                "Fixing sensor dark field...Done!\n" + kWrittenVerbosely);
    EXPECT_EQ(camera_.DatabaseText(), database);
}

TEST_F(Repair, ReportsAnUnfinishedDefectList) {
    support::WriteFile(Path(), SmallDng());
    support::WriteFile(camera_.Database(), Section() + Lines({124, 0, 124, 5000, 130, 0}));
    EXPECT_EQ(RunOnIt({"-s"}), kHeader +
                                   "No pixel error correction values available for camera No.3106091.\n"
                                   "No dark field correction values available for camera No.3106091.\n");
}

TEST_F(Repair, ReportsAnUnknownLens) {
    support::WriteFile(Path(), SmallDng({.lens_code = 0}));
    support::WriteFile(ProgramFolder() + "/lensdb.ini", samples::LensDatabase());
    EXPECT_EQ(RunOnIt({"-l", "-v"}),
              kReadVerbosely + "Error #0013: Lens could not be detected.\n" + kWrittenVerbosely);
    EXPECT_EQ(RunOnIt({"-r", "-l", "100001"}), kHeader);
    EXPECT_EQ(RunOnIt({"-r", "-l", "111111"}), kHeader);
}

// --- Memory

/// Repairs of files in which every IFD has an entry that claims most of the file's bytes.
class GreedyRepair : public Repair {
  protected:
    /// Whether `file` is repaired or refused using at most four times its size in memory.
    bool IsInProportion(const samples::CameraDngFile& file) const {
        support::WriteFile(Path(), samples::Serialize(file));
        const std::string limit = std::to_string(4 * samples::kCameraDngBytes / 1024);
        const auto outcome = support::RunProgram(
            "bash",
            {"-c", "ulimit -d " + limit + R"( && exec -a "$0" "$@")", ProgramFolder() + "/velmarcon",
             VELMARCON_PROGRAM, "-i", camera_.card.folder(), "-o", Path("OUT"), "-l", "-s", "-r"},
            {.through_path = true});
        return outcome.status == 0;
    }
};

TEST_F(GreedyRepair, TakesAtMostFourTimesTheFileInMemory) {
    support::WriteFile(ProgramFolder() + "/lensdb.ini", samples::LensDatabase());
    if (!IsInProportion(support::FullCameraDng())) {
        GTEST_SKIP() << "memory of a sanitizer would count as well";
    }
    for (const std::uint32_t bytes : {3000000U, 10000000U}) {
        auto greedy = support::FullCameraDng();
        for (auto* ifd : {&greedy.ifd0, &greedy.raw_ifd, &greedy.exif}) {
            samples::Set(*ifd, samples::RawEntry(60000, 7, bytes, 8));
        }
        EXPECT_TRUE(IsInProportion(greedy)) << bytes;
        samples::Set(greedy.exif, samples::RawEntry(tag::kMakerNote, 7, bytes, 8));
        EXPECT_TRUE(IsInProportion(greedy)) << bytes;
        samples::Set(greedy.raw_ifd, samples::RawEntry(tag::kStripByteCounts, 4, bytes / 4, 8));
        EXPECT_TRUE(IsInProportion(greedy)) << bytes;
    }
}

// --- A second repair

TEST_F(Repair, OfARepairedFileRepairsColumnsButRemovesNoDarkField) {
    support::WriteFile(Path(), SmallDng());
    const std::string levels = Levels(5);
    support::WriteFile(camera_.Database(), Section() + levels);
    RunWith({"-i", "L1000001.DNG", "-r", "-s"});
    auto expected = camera_.Pixels("L1000001");
    ASSERT_FALSE(expected == support::CameraLevels(kWidth, kHeight));

    support::WriteFile(camera_.Database(), Section() + Lines({124, 7, 124, 5000}) + levels);
    EXPECT_EQ(RunWith({"-i", "L1000001.DNG", "-r", "-s", "-v"}),
              kReadVerbosely + "Fixing pixel errors...Done!\n" + kWrittenVerbosely);
    support::InterpolateColumn(expected, kWidth, 100, 1);
    EXPECT_TRUE(camera_.Pixels("L1000001") == expected);
}

}  // namespace
