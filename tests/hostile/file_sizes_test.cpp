// SPDX-License-Identifier: MIT
// Empty files, and files at and beyond the limits of 31 and 32 bits. The files are sparse and take no room on
// the disk.
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "tests/end_to_end/card.h"
#include "tests/end_to_end/sensor_camera.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tests/support/program.h"

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kTwoTo31 = std::uintmax_t{1} << 31U;
constexpr std::uintmax_t kTwoTo32 = std::uintmax_t{1} << 32U;

class FileSize : public testing::Test {
  protected:
    /// Sizes around the limits of 31 and 32 bits. `good` is the correct size of the file; the last size
    /// equals it in 32 bits.
    static std::vector<std::uintmax_t> Huge(std::uintmax_t good) {
        return {kTwoTo31 - 1, kTwoTo31, kTwoTo31 + good, kTwoTo32 - 1, kTwoTo32, kTwoTo32 + good};
    }

    /// Runs to the end with little memory.
    std::string Run(const std::vector<std::string>& arguments, int status = 0) const {
        const auto outcome = camera_.Run(arguments);
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.errors, "");
#ifndef __SANITIZE_ADDRESS__
        // The memory of this test process counts as well.
        constexpr long some_raw_files = 8 * 21041100 / 1024;
        EXPECT_LT(outcome.peak_kilobytes, some_raw_files);
#endif
        return outcome.output;
    }

    std::string LensDatabase() const {
        return fs::path(camera_.Database()).replace_filename("lensdb.ini");
    }

    end_to_end::SensorCamera camera_;
    const end_to_end::Card& card_ = camera_.card;
};

const std::string kHeader = "\nImage: A.RAW\n\n";

TEST_F(FileSize, RawFileMayBeLongerThanADumpUpTo31Bits) {
    card_.AddPair("A");
    EXPECT_EQ(Run({}), kHeader);
    const auto expected = support::ReadFile(card_ / "A.DNG");
    const auto good = fs::file_size(card_ / "A.RAW");
    for (const std::uintmax_t size : Huge(good)) {
        fs::resize_file(card_ / "A.RAW", size);
        fs::remove(card_ / "A.DNG");
        if (size < kTwoTo31) {
            EXPECT_EQ(Run({}), kHeader) << size;
            EXPECT_TRUE(support::ReadFile(card_ / "A.DNG") == expected) << size;
        } else {
            EXPECT_EQ(Run({}), kHeader + "A.RAW: Error #0008: Damaged RAW file.\n") << size;
            EXPECT_FALSE(fs::exists(card_ / "A.DNG")) << size;
        }
    }
    fs::resize_file(card_ / "A.RAW", 0);
    EXPECT_EQ(Run({}), kHeader + "A.RAW: Error #0008: Damaged RAW file.\n");
}

TEST_F(FileSize, JpegIsLimited) {
    card_.AddPair("A");
    auto sizes = Huge(fs::file_size(card_ / "A.JPG"));
    sizes.push_back(0);
    for (const std::uintmax_t size : sizes) {
        fs::resize_file(card_ / "A.JPG", size);
        EXPECT_EQ(Run({}), kHeader + "A.JPG: Error #0009: Damaged EXIF in JPG.\n") << size;
        EXPECT_FALSE(fs::exists(card_ / "A.DNG")) << size;
    }
}

TEST_F(FileSize, DarkFrameMayHaveAnySize) {
    card_.AddPair("A");
    card_.AddDarkFrame("A", 100);
    EXPECT_EQ(Run({"-b"}), kHeader);
    const auto expected = support::ReadFile(card_ / "A.DNG");
    for (const std::uintmax_t size : Huge(fs::file_size(card_ / "A.BIA"))) {
        fs::resize_file(card_ / "A.BIA", size);
        fs::remove(card_ / "A.DNG");
        EXPECT_EQ(Run({"-b"}), kHeader) << size;
        EXPECT_TRUE(support::ReadFile(card_ / "A.DNG") == expected) << size;
    }
    // An empty dark frame is as dark as can be.
    fs::resize_file(card_ / "A.BIA", 0);
    EXPECT_EQ(Run({"-b", "-r"}), kHeader);
    const auto undarkened = end_to_end::RawPixels(card_.Dng("A"));
    fs::remove(card_ / "A.BIA");
    EXPECT_EQ(Run({"-r"}), kHeader);
    EXPECT_TRUE(end_to_end::RawPixels(card_.Dng("A")) == undarkened);
}

TEST_F(FileSize, CameraDngIsLimited) {
    support::WriteFile(card_ / "A.DNG", samples::Serialize(support::FullCameraDng()));
    for (const std::uintmax_t size : Huge(samples::kCameraDngBytes)) {
        fs::resize_file(card_ / "A.DNG", size);
        EXPECT_EQ(Run({"-i", "A.DNG", "-r"}, 19),
                  "A.DNG: Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.\n")
            << size;
        EXPECT_EQ(Run({"-i", card_.folder(), "-r"}, 5), "Error #0005: No RAW files found in folder.\n")
            << size;
        EXPECT_EQ(fs::file_size(card_ / "A.DNG"), size);
    }
    fs::resize_file(card_ / "A.DNG", 0);
    EXPECT_EQ(Run({"-i", "A.DNG", "-r"}),
              "\nImage: A.DNG\n\nA.DNG: Error #0017: Damaged DNG file.\nError #0017: Damaged DNG file.\n");
    EXPECT_EQ(Run({"-i", card_.folder(), "-r"}, 5), "Error #0005: No RAW files found in folder.\n");
}

TEST_F(FileSize, LensDatabaseIsLimited) {
    card_.AddPair("A");
    const std::string lens = "[100001]\nMaker = Maker\n";
    support::WriteFile(LensDatabase(), lens);
    EXPECT_EQ(Run({"-l"}), kHeader);
    auto sizes = Huge(lens.size());
    sizes.push_back(0);
    for (const std::uintmax_t size : sizes) {
        fs::resize_file(LensDatabase(), size);
        EXPECT_EQ(Run({"-l", "-r"}, 12), "Error #0012: Missing lens database file lensdb.ini.\n") << size;
        EXPECT_EQ(Run({"-r"}), kHeader) << size;
    }
}

TEST_F(FileSize, SensorDatabaseIsLimitedAndNotReplacedIfTooLong) {
    card_.AddPair("A");
    const std::string camera = end_to_end::Section() + end_to_end::Lines({124, 0, 124, 5000});
    support::WriteFile(camera_.Database(), camera);
    for (const std::uintmax_t size : Huge(camera.size())) {
        fs::resize_file(camera_.Database(), size);
        EXPECT_EQ(Run({"-s", "-r"}), kHeader + "Error #0014: No Sensor database found.\n") << size;
        EXPECT_NE(Run({"-sd", "-r"})
                      .find(camera_.Database() + ": sensor database not written: the file "
                                                 "that is there could not be read\n"),
                  std::string::npos)
            << size;
        EXPECT_EQ(fs::file_size(camera_.Database()), size);
    }
    fs::resize_file(camera_.Database(), 0);
    EXPECT_EQ(Run({"-s", "-r"}),
              kHeader + "No dark field correction values available for camera No.3106091.\n");
    Run({"-sd", "-r"});
    EXPECT_TRUE(camera_.DatabaseText().starts_with("[3106091]\nLevelCorrection = "));
}

}  // namespace
