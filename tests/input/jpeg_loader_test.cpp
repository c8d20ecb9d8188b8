// SPDX-License-Identifier: MIT
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "input/read_input_data.h"
#include "samples/camera_jpeg.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/files.h"
#include "tests/support/short_file.h"

namespace {

constexpr int kExifDamaged = 9;
constexpr int kJpgNotFound = 10;
constexpr int kJpgUnreadable = 11;

/// A record set up to read X.JPG from `folder`.
ReadInputData RecordIn(const support::TempFolder& folder, bool verbose = false) {
    ReadInputData record;
    record.Folder = folder.prefix();
    record.JpgFileName = "X.JPG";
    record.Verbose = verbose;
    return record;
}

/// Reads `bytes` as a JPEG into a record with the maker "before" and returns the result.
int LoadBytes(const std::vector<std::uint8_t>& bytes) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.JPG", bytes);
    return RecordIn(folder).LoadJPGExif();
}

TEST(JpegLoader, FillsTheExifRecord) {
    const support::TempFolder folder;
    support::WriteFile(folder / "X.JPG", samples::CameraJpeg(samples::CameraExif({.iso = 640})));
    ReadInputData record = RecordIn(folder);
    EXPECT_EQ(support::CaptureStdout([&] { EXPECT_EQ(record.LoadJPGExif(), 0); }), "");
    EXPECT_EQ(record.Exif.ISOSpeedRatings, 640);
    EXPECT_EQ(record.Exif.SerialNumber, 3106091U);
}

TEST(JpegLoader, AMissingFileOrAFolderIsNotFound) {
    const support::TempFolder folder;
    EXPECT_EQ(RecordIn(folder).LoadJPGExif(), kJpgNotFound);
    std::filesystem::create_directory(folder / "X.JPG");
    EXPECT_EQ(RecordIn(folder).LoadJPGExif(), kJpgNotFound);
}

TEST(JpegLoader, AFileThatCannotBeReadCompletelyIsAnError) {
    const std::string odd = support::kFileShorterThanItsLength;
    if (!std::filesystem::exists(odd)) {
        GTEST_SKIP() << odd << " does not exist";
    }
    const support::TempFolder folder;
    std::filesystem::create_symlink(odd, folder / "X.JPG");
    EXPECT_EQ(RecordIn(folder).LoadJPGExif(), kJpgUnreadable);
}

TEST(JpegLoader, EveryErrorOfTheParserIsReportedAsDamage) {
    const auto good = samples::Serialize(samples::CameraExif({}));
    std::vector<std::uint8_t> padded = samples::CameraJpeg(good);
    padded.push_back(0);
    EXPECT_EQ(LoadBytes({}), kExifDamaged) << "no bytes";
    EXPECT_EQ(LoadBytes(padded), kExifDamaged) << "no JPEG";
    EXPECT_EQ(LoadBytes(samples::TinyJpeg()), kExifDamaged) << "no EXIF";
    EXPECT_EQ(LoadBytes(samples::CameraJpeg({.magic = 43})), kExifDamaged) << "corrupt EXIF";
    EXPECT_EQ(LoadBytes(samples::CameraJpeg({.byte_order_mark = {{'I', 'M'}}})), kExifDamaged)
        << "byte order";
    EXPECT_EQ(LoadBytes(samples::CameraJpeg(good)), 0);
}

TEST(JpegLoader, AfterAnErrorTheRecordKeepsEarlierValues) {
    const support::TempFolder folder;
    samples::ExifBlock block = samples::CameraExif({});
    block.exif_count = 0xFFFF;
    support::WriteFile(folder / "X.JPG", samples::CameraJpeg(block));
    ReadInputData record = RecordIn(folder);
    EXPECT_EQ(record.LoadJPGExif(), kExifDamaged);
    EXPECT_EQ(record.Exif.Make, std::string("Leica Camera AG\0", 16));
}

TEST(JpegLoader, AFileWhoseSizeOnlyFitsCutTo32BitsIsDamaged) {
    const support::TempFolder folder;
    const auto jpeg = samples::CameraJpeg(samples::CameraExif({}));
    support::WriteFile(folder / "X.JPG", jpeg);
    // The file is sparse and takes no room on the disk.
    std::filesystem::resize_file(folder / "X.JPG", (std::uintmax_t{1} << 32U) + jpeg.size());
    EXPECT_EQ(RecordIn(folder).LoadJPGExif(), kExifDamaged);
}

TEST(JpegLoader, AFileOf64MiBIsReadAndALargerOneIsDamaged) {
    constexpr std::uintmax_t longest = std::uintmax_t{64} * 1024 * 1024;
    const support::TempFolder folder;
    const std::string path = folder / "X.JPG";
    support::WriteFile(path, samples::CameraJpeg(samples::CameraExif({})));
    for (const auto& [size, result] : {std::pair(longest, 0), std::pair(longest + 1, kExifDamaged)}) {
        std::filesystem::resize_file(path, size - 2);
        std::ofstream(path, std::ios::binary | std::ios::app) << "\xFF\xD9";
        ASSERT_EQ(std::filesystem::file_size(path), size);
        EXPECT_EQ(RecordIn(folder).LoadJPGExif(), result) << size;
    }
}

TEST(JpegLoader, VerboseNamesTheFileAndEndsTheLineOnSuccess) {
    const support::TempFolder folder;
    ReadInputData record = RecordIn(folder, true);
    EXPECT_EQ(support::CaptureStdout([&] { EXPECT_EQ(record.LoadJPGExif(), kJpgNotFound); }),
              "Reading X.JPG...");
    support::WriteFile(folder / "X.JPG", "no JPEG");
    EXPECT_EQ(support::CaptureStdout([&] { EXPECT_EQ(record.LoadJPGExif(), kExifDamaged); }),
              "Reading X.JPG...");
    support::WriteFile(folder / "X.JPG", samples::CameraJpeg(samples::CameraExif({})));
    EXPECT_EQ(support::CaptureStdout([&] { EXPECT_EQ(record.LoadJPGExif(), 0); }), "Reading X.JPG...Done!\n");
}

}  // namespace
