// SPDX-License-Identifier: MIT
#include "samples/sample_card.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_dng.h"
#include "samples/sample_databases.h"
#include "samples/sensor_dump.h"
#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;

/// Gives each test a temporary folder.
class SampleCard : public testing::Test {
  public:
    SampleCard(const SampleCard&) = delete;
    SampleCard& operator=(const SampleCard&) = delete;
    SampleCard(SampleCard&&) = delete;
    SampleCard& operator=(SampleCard&&) = delete;

  protected:
    SampleCard() : folder_(fs::path(testing::TempDir()) / ("card_" + TestName())) { fs::remove_all(folder_); }
    ~SampleCard() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    std::string Folder() const { return folder_.string(); }

    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    std::uintmax_t SizeOf(const std::string& name) const { return fs::file_size(folder_ / name); }

  private:
    static std::string TestName() { return testing::UnitTest::GetInstance()->current_test_info()->name(); }

    fs::path folder_;
};

TEST_F(SampleCard, HoldsAllRequestedFiles) {
    const samples::CardOptions options = {
        .pairs = 1, .iso = 320, .noise = false, .dark = true, .dng = true, .databases = true};
    ASSERT_EQ(samples::WriteCard(Folder(), options), "");
    EXPECT_EQ(Names(), (std::set<std::string>{"L1000001.RAW", "L1000001.JPG", "L1000001.BIA", "L1000002.RAW",
                                              "L1000002.JPG", "L1000003.DNG", "lensdb.ini", "sensdb.ini"}));
    EXPECT_EQ(SizeOf("L1000001.RAW"), samples::kDumpBytes);
    EXPECT_EQ(SizeOf("L1000001.BIA"), samples::kDumpBytes);
    EXPECT_EQ(SizeOf("L1000002.RAW"), samples::kDumpBytes);
    EXPECT_EQ(SizeOf("L1000003.DNG"), samples::kCameraDngBytes);
}

TEST_F(SampleCard, KeepsExistingFilesUnlessForced) {
    samples::CardOptions options = {.pairs = 0, .databases = true};
    ASSERT_EQ(samples::WriteCard(Folder(), options), "");
    EXPECT_NE(samples::WriteCard(Folder(), options).find("exists already"), std::string::npos);
    options.force = true;
    EXPECT_EQ(samples::WriteCard(Folder(), options), "");
}

TEST_F(SampleCard, HasOtherPixelsWithAnotherSeed) {
    const auto card = [this](int seed) {
        EXPECT_EQ(samples::WriteCard(Folder(), {.pairs = 1, .seed = seed, .force = true}), "");
        return support::ReadFile(Folder() + "/L1000001.RAW");
    };
    const auto first = card(1);
    EXPECT_TRUE(card(1) == first);
    EXPECT_FALSE(card(2) == first);
}

TEST_F(SampleCard, ReportsAFolderThatCannotBeCreated) {
    ASSERT_EQ(samples::WriteCard(Folder(), {.pairs = 0, .databases = true}), "");
    EXPECT_NE(samples::WriteCard(Folder() + "/lensdb.ini/card", {.pairs = 0}), "");
}

TEST(SampleCardShots, DifferInIsoLensAndTime) {
    const samples::Shot first = samples::CardShot(1, {});
    const samples::Shot second = samples::CardShot(2, {});
    EXPECT_EQ(first.iso, 160);
    EXPECT_EQ(second.iso, 640);
    EXPECT_NE(first.lens_code, second.lens_code);
    EXPECT_EQ(first.date_time, "2007:08:02 10:13:37");
    EXPECT_EQ(second.date_time, "2007:08:02 10:14:14");
    EXPECT_EQ(samples::CardShot(4, {}).lens_code, 0);
    EXPECT_EQ(samples::CardShot(2, {.iso = 160}).iso, 160);
}

TEST(SampleCardShots, HaveBiasesBelowAndAboveZero) {
    EXPECT_EQ(samples::CardShot(1, {}).exposure_bias.numerator, 0);
    EXPECT_EQ(samples::CardShot(2, {}).exposure_bias.numerator, -65536);
    EXPECT_EQ(samples::CardShot(3, {}).exposure_bias.numerator, 43691);
    EXPECT_EQ(samples::CardShot(4, {}).exposure_bias.numerator, 0);
}

/// The frame selector of a lens of `focal_length` mm, or of a Tri-Elmar set to it.
int FrameLinesOf(std::uint32_t focal_length) {
    switch (focal_length) {
        case 16:
        case 28:
        case 90:
            return 1;
        case 18:
        case 24:
        case 35:
            return 2;
        default:
            return 3;
    }
}

TEST(SampleCardShots, TheFrameSelectorMatchesLensAndFocalLength) {
    std::set<std::pair<int, std::uint32_t>> seen;
    for (int number = 1; number <= 12; ++number) {
        const samples::Shot shot = samples::CardShot(number, {});
        if (number % 4 == 0) {
            EXPECT_EQ(shot.lens_code, 0) << number;
            continue;
        }
        const std::uint32_t focal_length = shot.focal_length.numerator / 1000;
        EXPECT_EQ(shot.frame_selector, FrameLinesOf(focal_length)) << number;
        seen.emplace(shot.lens_code, focal_length);
    }
    for (const auto& setting : {std::pair{42, 28U}, {42, 35U}, {42, 50U}, {16, 16U}, {16, 18U}, {16, 21U}}) {
        EXPECT_TRUE(seen.contains(setting)) << setting.first << ' ' << setting.second;
    }
}

TEST(SampleCardShots, BaseNamesCountLikeTheCamera) {
    EXPECT_EQ(samples::BaseName(1), "L1000001");
    EXPECT_EQ(samples::BaseName(200), "L1000200");
}

TEST(SampleDatabases, LensesAreKeyedByTheBitsOfTheirCode) {
    for (const samples::Lens& lens : samples::Lenses()) {
        std::string bits;
        for (unsigned bit = 6; bit-- > 0;) {
            bits += (lens.code >> bit & 1U) != 0 ? '1' : '0';
        }
        EXPECT_EQ(lens.bits, bits);
        EXPECT_NE(samples::LensDatabase().find("[" + bits + "]"), std::string::npos);
    }
}

TEST(SampleDatabases, HaveOneSectionForEachCode) {
    const std::string text = samples::LensDatabase();
    EXPECT_EQ(std::ranges::count(text, '['), 5);
    EXPECT_NE(text.find("[101010]\nMaker = Leica\nModel = Tri-Elmar-M 28-35-50mm f/4 ASPH.\n"
                        "SerialNo = 1234567\nFocalLength = 28\nAperture = 4\n"),
              std::string::npos);
}

TEST(SampleDatabases, ListEachDefectOfTheSampleSensor) {
    const std::string text = samples::SensorDatabase(42, {});
    // A column that is bad from the top has two groups.
    for (const char* const group :
         {"Line = 1203\nLine = 700\nLine = 1203\nLine = 2646\n",
          "Line = 2750\nLine = 0\nLine = 2750\nLine = 6\nLine = 2750\nLine = 6\nLine = 2750\nLine = 2646\n",
          "Line = 618\nLine = 1250\nLine = 618\nLine = 2646\n",
          "Line = 3310\nLine = 0\nLine = 3310\nLine = 6\nLine = 3310\nLine = 6\nLine = 3310\nLine = "
          "1800\n"}) {
        EXPECT_NE(text.find(group), std::string::npos) << group;
    }
}

TEST(SampleDatabases, SensorDatabaseHoldsDefectsAndOneLevelPerColumn) {
    const std::string text = samples::SensorDatabase(42, {.defects = {{1203, 700, 2646, 9000}}});
    EXPECT_TRUE(
        text.starts_with("[42]\nLine = 1203\nLine = 700\nLine = 1203\nLine = 2646\nLevelCorrection = "));
    EXPECT_NE(text.find("LevelCorrection = 0.000000\n"), std::string::npos);
    EXPECT_EQ(std::ranges::count(text, '\n'), 1 + 4 + samples::kSensorWidth);
}

}  // namespace
