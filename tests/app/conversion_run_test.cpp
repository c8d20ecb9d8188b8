// SPDX-License-Identifier: MIT
#include "app/conversion_run.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_dng.h"
#include "samples/camera_jpeg.h"
#include "samples/sensor_dump.h"
#include "system/path_names.h"
#include "tests/app/working_folder.h"
#include "tests/support/camera_dng.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/files.h"
#include "tests/support/tiff_file.h"

namespace {

using Names = std::vector<std::string>;

constexpr std::uint16_t kBlackLevel = 50714;
constexpr std::uint16_t kExifIFD = 34665;
constexpr std::uint16_t kFNumber = 33437;
constexpr std::uint16_t kLensModel = 42036;
constexpr std::uint16_t kModel = 272;
constexpr std::uint16_t kStripOffsets = 273;
constexpr std::uint16_t kSubIFDs = 330;

constexpr std::size_t kRawSize = 21041100;
constexpr std::size_t kImageSize = 20998656;  // 3968 x 2646 pixels of 2 bytes

void WriteJpg(const std::string& path, const samples::Shot& shot = {}) {
    support::WriteFile(path, samples::CameraJpeg(samples::CameraExif(shot)));
}

/// Pairs in a temporary folder, and runs over them.
class Conversion : public testing::Test {
  protected:
    /// Writes a pair whose image is black.
    void MakePair(const std::string& base, const samples::Shot& shot = {}) const {
        WriteJpg(folder_ / (base + ".JPG"), shot);
        MakeFile(folder_ / (base + ".RAW"), kRawSize);
    }

    /// Writes a RAW or BIA file in which every pixel is `value`.
    void MakeDump(const std::string& name, std::uint16_t value) const {
        support::WriteFile(folder_ / name, samples::DumpBytes(samples::FlatWords(value)));
    }

    /// Converts the files `names` and returns what is printed. The status is always 0.
    std::string Run(const Names& names) {
        settings_.input = {folder_.prefix(), names};
        settings_.output_folder = folder_.prefix();
        return RunAsSet();
    }

    std::string RunAsSet() {
        const ErrorHandler errors;
        sensdb sensors("");
        return support::CaptureStdout(
            [&] { EXPECT_EQ(ConversionRun(settings_, lenses_, sensors, errors).Run(), 0); });
    }

    bool Exists(const std::string& name) const { return std::filesystem::exists(folder_ / name); }

    support::TiffFile Dng(const std::string& base) const {
        return support::TiffFile(support::ReadFile(folder_ / (base + ".DNG")));
    }

    static support::TiffIFD ExifOf(const support::TiffFile& file) {
        return file.ReadIFD(file.FirstIFD().At(kExifIFD).Number());
    }

    /// "BlackLevel/first pixel" of a converted pair, with "none" if there is no black level.
    std::string Levels(const std::string& base) const {
        const auto file = Dng(base);
        const auto ifd0 = file.FirstIFD();
        const auto pixel = file.Bytes(ifd0.At(kStripOffsets).Number(), 2);
        return (ifd0.Has(kBlackLevel) ? std::to_string(ifd0.At(kBlackLevel).Number()) : "none") + "/" +
               std::to_string(pixel[0] + 256 * pixel[1]);
    }

    const support::TempFolder folder_;
    RunSettings settings_;
    lensdb lenses_;
};

TEST_F(Conversion, NamesASingleImage) {
    MakePair("a");
    EXPECT_EQ(Run({"a.RAW"}), "\nImage: a.RAW\n\n");
    EXPECT_EQ(support::Names(folder_.path()), (Names{"a.DNG", "a.JPG", "a.RAW"}));
    EXPECT_EQ(Dng("a").FirstIFD().At(kModel).Text(), std::string("M8 Digital Camera\0", 18));
}

TEST_F(Conversion, CountsSeveralImagesInTheOrderOfTheList) {
    MakePair("a");
    MakePair("b.x");
    EXPECT_EQ(Run({"b.x.RAW", "missing.RAW", "a.RAW"}),
              "\nImage 1 of 3: b.x.RAW\n\n"
              "\nImage 2 of 3: missing.RAW\n\n"
              "missing.JPG: Error #0010: Unable to find JPG file.\n"
              "\nImage 3 of 3: a.RAW\n\n");
    EXPECT_TRUE(Exists("b.x.DNG"));
    EXPECT_FALSE(Exists("missing.DNG"));
    EXPECT_TRUE(Exists("a.DNG"));
}

TEST_F(Conversion, NamesItsStepsWhenVerbose) {
    MakePair("a");
    settings_.verbose = true;
    settings_.black_level_given = true;
    EXPECT_EQ(Run({"a.RAW"}),
              "\nImage: a.RAW\n\n"
              "Reading a.JPG...Done!\nReading a.RAW...Done!\nCalculating blacklevel...Done!\n"
              "Writing DNG header...Done!\nWriting image data...Done!\n");
}

TEST_F(Conversion, OnlyReportsAnExistingDng) {
    support::WriteFile(folder_ / "a.DNG", "old");
    settings_.verbose = true;
    EXPECT_EQ(Run({"a.RAW"}), "\nImage: a.RAW\n\nFile a.DNG already exists!\n");
    EXPECT_EQ(support::ReadFile(folder_ / "a.DNG").size(), 3U);
}

TEST_F(Conversion, OverwritesAnExistingDngWithRefresh) {
    MakePair("a");
    support::WriteFile(folder_ / "a.DNG", "old");
    settings_.refresh = true;
    EXPECT_EQ(Run({"a.RAW"}), "\nImage: a.RAW\n\n");
    EXPECT_GT(Dng("a").size(), kImageSize);
}

TEST_F(Conversion, LooksForAnExistingDngInTheOutputFolder) {
    MakePair("a");
    support::WriteFile(folder_ / "a.DNG", "old");
    std::filesystem::create_directory(folder_ / "out");
    settings_.input = {folder_.prefix(), {"a.RAW"}};
    settings_.output_folder = folder_ / "out/";
    EXPECT_EQ(RunAsSet(), "\nImage: a.RAW\n\n");
    EXPECT_EQ(support::ReadFile(folder_ / "a.DNG").size(), 3U);
    EXPECT_EQ(support::Names(folder_ / "out"), Names{"a.DNG"});
}

TEST_F(Conversion, WritesNextToABareInputFile) {
    const WorkingFolder working(folder_.path());
    MakePair("a");
    settings_.input = {"", {"a.RAW"}};
    settings_.output_folder = "";
    EXPECT_EQ(RunAsSet(), "\nImage: a.RAW\n\n");
    EXPECT_EQ(support::Names(folder_.path()), (Names{"a.DNG", "a.JPG", "a.RAW"}));
}

TEST_F(Conversion, WritesNextToThePairWithoutAnOutputFolder) {
    const support::TempFolder elsewhere;
    const WorkingFolder working(elsewhere.path());
    MakePair("a");
    settings_.input = {folder_.prefix(), {"a.RAW"}};
    settings_.output_folder = "";
    EXPECT_EQ(RunAsSet(), "\nImage: a.RAW\n\n");
    EXPECT_TRUE(Exists("a.DNG"));
    EXPECT_EQ(support::Names(elsewhere.path()), Names{});
}

TEST_F(Conversion, ContinuesAfterADngThatCannotBeWritten) {
    MakePair("a");
    MakePair("b");
    std::filesystem::create_directory(folder_ / "a.DNG");
    EXPECT_EQ(Run({"a.RAW", "b.RAW"}), "\nImage 1 of 2: a.RAW\n\n" + (folder_ / "a.DNG") +
                                           ": DNG not written: Is a directory\n"
                                           "\nImage 2 of 2: b.RAW\n\n");
    EXPECT_TRUE(Exists("b.DNG"));
}

TEST_F(Conversion, ReportsLoadingErrorsWithTheNameOfTheFile) {
    WriteJpg(folder_ / "noraw.JPG");
    MakePair("shortraw");
    std::filesystem::resize_file(folder_ / "shortraw.RAW", 10499327);
    MakeFile(folder_ / "nojpg.RAW", kRawSize);
    MakePair("badjpg");
    support::WriteFile(folder_ / "badjpg.JPG", "no JPEG");
    MakePair("good");
    std::filesystem::resize_file(folder_ / "good.RAW", 10499328);
    EXPECT_EQ(Run({"noraw.RAW", "shortraw.RAW", "nojpg.RAW", "badjpg.RAW", "good.RAW"}),
              "\nImage 1 of 5: noraw.RAW\n\n"
              "noraw.RAW: Error #0006: Unable to find RAW file.\n"
              "\nImage 2 of 5: shortraw.RAW\n\n"
              "shortraw.RAW: Error #0008: Damaged RAW file.\n"
              "\nImage 3 of 5: nojpg.RAW\n\n"
              "nojpg.JPG: Error #0010: Unable to find JPG file.\n"
              "\nImage 4 of 5: badjpg.RAW\n\n"
              "badjpg.JPG: Error #0009: Damaged EXIF in JPG.\n"
              "\nImage 5 of 5: good.RAW\n\n");
    EXPECT_TRUE(Exists("good.DNG"));
    for (const char* name : {"noraw.DNG", "shortraw.DNG", "nojpg.DNG", "badjpg.DNG"}) {
        EXPECT_FALSE(Exists(name)) << name;
    }
}

TEST_F(Conversion, MakesEachDngAsIfItWereTheOnlyOne) {
    const support::TempFolder output;
    settings_.refresh = true;
    settings_.output_folder = output.prefix();
    support::WriteFile(folder_ / "LARGE.DNG", samples::Serialize(support::SmallCameraDng(90, 60)));
    support::WriteFile(folder_ / "SMALL.DNG", samples::Serialize(support::SmallCameraDng(12, 7)));
    MakePair("PAIR");
    const auto convert = [&](const Names& names) {
        settings_.input = {folder_.prefix(), names};
        RunAsSet();
        return support::ReadFile(output / (path_names::BaseName(names.back()) + ".DNG"));
    };
    const auto small = convert({"SMALL.DNG"});
    const auto large = convert({"LARGE.DNG"});
    const auto pair = convert({"PAIR.RAW"});
    EXPECT_TRUE(convert({"LARGE.DNG", "SMALL.DNG"}) == small);
    EXPECT_TRUE(convert({"SMALL.DNG", "LARGE.DNG"}) == large);
    EXPECT_TRUE(convert({"PAIR.RAW", "LARGE.DNG"}) == large);
    EXPECT_TRUE(convert({"LARGE.DNG", "PAIR.RAW"}) == pair);
}

TEST_F(Conversion, PassesTheOptionsToTheDng) {
    MakePair("a", {.iso = 2500});
    settings_.preview = true;
    settings_.raw_model_variant = true;
    settings_.black_level_given = true;
    Run({"a.RAW"});
    const auto file = Dng("a");
    const auto ifd0 = file.FirstIFD();
    EXPECT_EQ(ifd0.At(kModel).Text(), std::string("M8RAW Digital Camera\0", 21));
    EXPECT_EQ(file.ReadIFD(ifd0.At(kSubIFDs).Number()).At(kBlackLevel).Number(), 1472U);
}

TEST_F(Conversion, SubtractsADarkFrameOnlyFromItsOwnImage) {
    for (const char* base : {"a", "b"}) {
        MakePair(base, {.iso = 320});
        MakeDump(std::string(base) + ".RAW", 1000);
    }
    MakeDump("a.BIA", 90);
    settings_.black_level_given = true;
    settings_.black_level = 120;
    Run({"a.RAW", "b.RAW"});
    EXPECT_EQ(Levels("a"), "0/910");
    EXPECT_EQ(Levels("b"), "240/1000");
}

TEST_F(Conversion, IgnoresADarkFrameWithoutABlackLevel) {
    MakePair("a");
    MakeDump("a.RAW", 1000);
    MakeDump("a.BIA", 90);
    Run({"a.RAW"});
    EXPECT_EQ(Levels("a"), "none/1000");
}

TEST_F(Conversion, StaysInDarkFrameModeAfterAnImageWithOneFailed) {
    // "bad" has a dark frame but no RAW file, so the mode stays on: "b" then lacks a dark frame, and only
    // "c", which has one and is written, ends the mode.
    WriteJpg(folder_ / "bad.JPG");
    MakeFile(folder_ / "bad.BIA");
    for (const char* base : {"b", "c", "d"}) {
        MakePair(base);
    }
    MakeFile(folder_ / "c.BIA");
    settings_.black_level_given = true;
    EXPECT_EQ(Run({"bad.RAW", "b.RAW", "c.RAW", "d.RAW"}),
              "\nImage 1 of 4: bad.RAW\n\n"
              "bad.RAW: Error #0006: Unable to find RAW file.\n"
              "\nImage 2 of 4: b.RAW\n\n"
              "Error #0016: Damaged BIA file.\n"
              "\nImage 3 of 4: c.RAW\n\n"
              "\nImage 4 of 4: d.RAW\n\n");
    EXPECT_FALSE(Exists("b.DNG"));
    EXPECT_EQ(Levels("c"), "0/0");
    EXPECT_EQ(Levels("d"), "92/0");
}

TEST_F(Conversion, FailsWithADarkFrameThatCannotBeRead) {
    MakePair("a");
    std::filesystem::create_directory(folder_ / "a.BIA");
    settings_.black_level_given = true;
    EXPECT_EQ(Run({"a.RAW"}), "\nImage: a.RAW\n\nError #0016: Damaged BIA file.\n");
    EXPECT_FALSE(Exists("a.DNG"));
}

/// Runs over one pair with -l; the database holds the lenses 000001 and 100001 (33).
class LensConversion : public Conversion {
  protected:
    LensConversion() {
        lenses_.Lenses["000001"].Model = "given";
        lenses_.Lenses["100001"].Model = "coded";
        settings_.lens_fix = true;
    }

    /// What is printed after the header, followed by the model of the lens in the DNG.
    std::string Convert(const std::string& lens_code, std::uint8_t camera_code) {
        MakePair("a", {.lens_code = camera_code});
        settings_.lens_code = lens_code;
        const std::string header = "\nImage: a.RAW\n\n";
        const std::string output = Run({"a.RAW"});
        EXPECT_TRUE(output.starts_with(header)) << output;
        const auto file = Dng("a");
        const auto exif = ExifOf(file);
        EXPECT_TRUE(exif.Has(kFNumber));
        return output.substr(header.size()) + (exif.Has(kLensModel) ? exif.At(kLensModel).Text() : "no lens");
    }
};

TEST_F(LensConversion, TakesTheGivenCodeWhereTheCameraSawNone) {
    EXPECT_EQ(Convert("000001", 0), std::string("given\0", 6));
}

TEST_F(LensConversion, NeverReplacesTheCamerasCode) {
    EXPECT_EQ(Convert("000001", 33), std::string("coded\0", 6));
}

TEST_F(LensConversion, UsesTheCamerasCodeWhenNoneIsGiven) {
    EXPECT_EQ(Convert("", 33), std::string("coded\0", 6));
}

TEST_F(LensConversion, ReportsThatThereIsNoCodeAndConverts) {
    EXPECT_EQ(Convert("", 0), "Error #0013: Lens could not be detected.\nno lens");
}

TEST_F(LensConversion, ConvertsWithACodeThatTheDatabaseLacks) {
    EXPECT_EQ(Convert("111111", 0), "no lens");
}

TEST_F(LensConversion, WithoutTheLensFixChangesNothing) {
    settings_.lens_fix = false;
    EXPECT_EQ(Convert("000001", 0), "no lens");
}

}  // namespace
