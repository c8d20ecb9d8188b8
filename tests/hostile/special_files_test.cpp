// SPDX-License-Identifier: MIT
// Special files in place of the files of a run: the run never waits for one, and processes the rest.
#include "tests/hostile/special_files.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/card.h"
#include "tests/end_to_end/sensor_camera.h"
#include "tests/support/files.h"
#include "tests/support/program.h"

namespace {

using hostile::SpecialFile;

class InPlaceOfAFile : public testing::TestWithParam<SpecialFile> {
  protected:
    /// Makes a card with a good pair A and a pair B that differs only in its name.
    void SetUp() override {
        if (!GetParam().device.empty() && !std::filesystem::exists(GetParam().device)) {
            GTEST_SKIP() << "this system has no " << GetParam().device;
        }
        card_.AddPair("A");
        card_.AddLinkedPair("B", "A");
    }

    void PutInPlaceOf(const std::string& path) const {
        std::filesystem::remove(path);
        ASSERT_TRUE(GetParam().make(path)) << path;
    }

    /// Runs through both pairs, expects that A is converted, and returns what the run prints.
    std::string Run(const std::vector<std::string>& arguments) const {
        std::filesystem::remove(card_ / "A.DNG");
        const auto outcome = camera_.Run(arguments);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors, "");
        EXPECT_EQ(end_to_end::RawPixels(card_.Dng("A")).size(), 3968U * 2646U);
        return outcome.output;
    }

    static bool HasLine(const std::string& output, const std::string& line) {
        return ("\n" + output).find("\n" + line + "\n") != std::string::npos;
    }

    /// Expects that the run has neither replaced nor removed the special file.
    static void ExpectStillSpecial(const std::string& path) {
        std::error_code error;  // a link to itself has no status
        EXPECT_TRUE(std::filesystem::exists(std::filesystem::symlink_status(path))) << path;
        EXPECT_FALSE(std::filesystem::is_regular_file(path, error)) << path;
    }

    end_to_end::SensorCamera camera_;
    const end_to_end::Card& card_ = camera_.card;
};

TEST_P(InPlaceOfAFile, NamedRawIsNotFound) {
    PutInPlaceOf(card_ / "B.RAW");
    EXPECT_TRUE(HasLine(Run({}), "B.RAW: Error #0006: Unable to find RAW file."));
    EXPECT_FALSE(std::filesystem::exists(card_ / "B.DNG"));
    EXPECT_EQ(camera_.Run({"-i", "B.RAW"}).status, 2);
}

TEST_P(InPlaceOfAFile, NamedJpgIsNotFound) {
    PutInPlaceOf(card_ / "B.JPG");
    EXPECT_TRUE(HasLine(Run({}), "B.JPG: Error #0010: Unable to find JPG file."));
    EXPECT_FALSE(std::filesystem::exists(card_ / "B.DNG"));
}

TEST_P(InPlaceOfAFile, NamedBiaIsADamagedDarkFrameUnlessItIsADanglingLink) {
    PutInPlaceOf(card_ / "B.BIA");
    if (std::string(GetParam().name) == "LinkToNothing") {
        Run({"-b", "100"});
        EXPECT_TRUE(support::ReadFile(card_ / "B.DNG") == support::ReadFile(card_ / "A.DNG"));
        return;
    }
    // Only this pair, because the next picture would still expect a dark frame.
    const auto outcome = camera_.Run({"-i", "B.RAW", "-b", "100"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "\nImage: B.RAW\n\nError #0016: Damaged BIA file.\n");
    EXPECT_FALSE(std::filesystem::exists(card_ / "B.DNG"));
}

TEST_P(InPlaceOfAFile, NamedDngIsNotAnImage) {
    PutInPlaceOf(card_ / "C.DNG");
    const std::string output = Run({"-i", card_.folder()});
    EXPECT_TRUE(HasLine(output, "Image 2 of 2: A.RAW") || HasLine(output, "Image 2 of 2: B.RAW")) << output;
    for (const std::string input : {"C.DNG", "C"}) {
        const auto outcome = camera_.Run({"-i", input});
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.output, "Error #0002: Given input (-i) is not a folder or supported RAW file.\n");
    }
}

TEST_P(InPlaceOfAFile, NamedLikeAFolderIsNotAFolder) {
    PutInPlaceOf(card_ / "folder");
    EXPECT_EQ(camera_.Run({"-i", "folder"}).status, 2);
    EXPECT_EQ(camera_.Run({"-o", "folder"}).status, 4);
}

TEST_P(InPlaceOfAFile, NamedLikeTheOutputIsNotReplaced) {
    PutInPlaceOf(card_ / "B.DNG");
    EXPECT_TRUE(HasLine(Run({}), "./B.DNG: DNG not written: File exists"));
    ExpectStillSpecial(card_ / "B.DNG");
    EXPECT_EQ(support::Names(card_.folder()).size(), 6U);
}

TEST_P(InPlaceOfAFile, NamedLensdbIniIsNotADatabase) {
    const std::string database = std::filesystem::path(camera_.Database()).replace_filename("lensdb.ini");
    PutInPlaceOf(database);
    Run({});
    const auto outcome = camera_.Run({"-l"});
    EXPECT_EQ(outcome.status, 12);
    EXPECT_EQ(outcome.output, "Error #0012: Missing lens database file lensdb.ini.\n");
}

TEST_P(InPlaceOfAFile, NamedSensdbIniIsNotADatabaseAndIsNotReplaced) {
    PutInPlaceOf(camera_.Database());
    EXPECT_TRUE(HasLine(Run({"-s"}), "Error #0014: No Sensor database found."));
    const std::string output = Run({"-i", "A", "-sd"});
    EXPECT_NE(output.find("\n" + camera_.Database() + ": sensor database not written: "), std::string::npos)
        << output;
    ExpectStillSpecial(camera_.Database());
}

INSTANTIATE_TEST_SUITE_P(All, InPlaceOfAFile, testing::ValuesIn(hostile::SpecialFiles()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
