// SPDX-License-Identifier: MIT
// Checks the DNGs that the program writes with exiftool.
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/sample_databases.h"
#include "tests/end_to_end/exif_tool.h"
#include "tests/end_to_end/tag_tables.h"
#include "tests/end_to_end/write_dng.h"
#include "tests/support/test_pair.h"

namespace end_to_end {

namespace {

/// A run of the program and its effect on the tags.
struct Run {
    const char* name = "";
    std::vector<std::string> options;
    bool preview = false;
    bool raw_variant = false;
    std::string black_level;  ///< at ISO 640; empty: none
    TagTexts lens_tags;       ///< in the EXIF IFD
    std::uint8_t lens_code = 33;
};

/// Gives the tests their names.
void PrintTo(const Run& run, std::ostream* out) {
    *out << run.name;
}

const TagTexts& Summicron() {
    static const TagTexts tags = {
        {33437, "rational64u[1] 367002/65536"},      // FNumber
        {37381, "rational64u[1] 1999/1000"},         // MaxApertureValue
        {37386, "rational64u[1] 50000/1000"},        // FocalLength
        {41989, "int16u[1] 67"},                     // FocalLengthIn35mmFilm
        {42035, "string[6] Leica"},                  // LensMake
        {42036, "string[21] Summicron-M 50mm f/2"},  // LensModel
        {42037, "string[8] 1234567"},                // LensSerialNumber
    };
    return tags;
}

const TagTexts& Summilux() {
    static const TagTexts tags = {
        {33437, "rational64u[1] 367002/65536"},
        {37381, "rational64u[1] 970/1000"},
        {37386, "rational64u[1] 35000/1000"},
        {41989, "int16u[1] 47"},
        {42035, "string[6] Leica"},
        {42036, "string[28] Summilux-M 35mm f/1.4 ASPH."},
        {42037, "string[8] 1234567"},
    };
    return tags;
}

std::vector<Run> Runs() {
    return {
        {.name = "Plain"},
        {.name = "Preview", .options = {"-p"}, .preview = true},
        {.name = "RawVariant", .options = {"-c"}, .raw_variant = true},
        {.name = "BlackLevel", .options = {"-b", "120"}, .black_level = "480"},
        {.name = "LensOfTheCamera", .options = {"-l"}, .lens_tags = Summicron()},
        {.name = "LensOfTheUser", .options = {"-l", "011101"}, .lens_tags = Summilux(), .lens_code = 0},
        {.name = "Everything",
         .options = {"-p", "-c", "-b", "120", "-l"},
         .preview = true,
         .raw_variant = true,
         .black_level = "480",
         .lens_tags = Summicron()},
    };
}

TagTexts ExpectedRawImage(const Run& run, std::uintmax_t offset) {
    TagTexts tags = RawImageTags();
    Merge(tags, StripTags());
    tags[273] = "int32u[1] " + std::to_string(offset);
    tags[50717] = run.preview ? "int32u[1] 16384" : "int32u[1] 16383";
    if (!run.black_level.empty()) {
        tags[50713] = "int16u[2] 1 1";
        tags[50714] = "int16u[1] " + run.black_level;
    }
    return tags;
}

TagTexts ExpectedPreview(std::uintmax_t offset) {
    TagTexts tags = PreviewTags();
    Merge(tags, StripTags());
    tags[273] = "int32u[1] " + std::to_string(offset);
    return tags;
}

/// The strips are at the end of the file, the preview before the raw image.
TagsOfFile ExpectedTags(const Run& run, std::uintmax_t file_size) {
    constexpr std::uintmax_t raw_size = 20998656;
    constexpr std::uintmax_t preview_size = 230400;
    const TagTexts raw = ExpectedRawImage(run, file_size - raw_size);
    TagsOfFile expected;
    expected["IFD0"] = run.preview ? ExpectedPreview(file_size - raw_size - preview_size) : raw;
    if (run.preview) {
        expected["SubIFD"] = raw;
    }
    Merge(expected["IFD0"], MainTags());
    if (run.raw_variant) {
        Merge(expected["IFD0"], RawVariantTags());
    }
    expected["ExifIFD"] = ExifTags();
    Merge(expected["ExifIFD"], run.lens_tags);
    expected["MakerNotes"] = MakerNoteTags();
    expected["MakerNotes"][0x0310] = "int32u[1] " + std::to_string(4 * run.lens_code + 3);
    return expected;
}

class ExifTool : public testing::TestWithParam<Run> {
  protected:
    /// Converts a pair with the metadata of `exif` and the options of the test's parameter.
    std::string Write(const samples::ExifBlock& exif) const {
        support::WritePair(folder_.path().string(), kBase, exif);
        support::WriteFile(folder_ / "lensdb.ini", samples::LensDatabase());
        return WriteDng(folder_, GetParam().options);
    }

  private:
    support::TempFolder folder_;
};

TEST_P(ExifTool, FindsExactlyTheTagsOfTheRun) {
    const std::string path = Write(DistinctExif(GetParam().lens_code));
    ExpectTags(ReadTags(path), ExpectedTags(GetParam(), std::filesystem::file_size(path)));
}

TEST_P(ExifTool, ComplainsOnlyAboutWhatTheCameraDoesToo) {
    samples::Shot shot;
    shot.lens_code = GetParam().lens_code;
    const std::vector<std::string> known = {
        // The camera keeps these TIFF/EP tags in IFD0, and so does the program.
        "Non-standard IFD0 tag 0x882b SelfTimerMode",
        "Non-standard IFD0 tag 0x920e FocalPlaneXResolution",
        "Non-standard IFD0 tag 0x920f FocalPlaneYResolution",
        "Non-standard IFD0 tag 0x9210 FocalPlaneResolutionUnit",
        // Only taken from a JPEG entry of another type, so 0 for the camera's files.
        "Unknown value for ExifIFD:FileSource",
        "Unknown value for ExifIFD:SceneType",
        "Wrong IFD for 0x9003 DateTimeOriginal (should be ExifIFD not IFD0)",
    };
    EXPECT_EQ(Complaints(Write(samples::CameraExif(shot))), known);
}

INSTANTIATE_TEST_SUITE_P(Runs, ExifTool, testing::ValuesIn(Runs()), testing::PrintToStringParamName());

}  // namespace

}  // namespace end_to_end
