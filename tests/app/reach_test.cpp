// SPDX-License-Identifier: MIT
#include "app/reach.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class ReachTest : public testing::Test {
  protected:
    ReachTest() {
        settings_.input = {folder_ / "in/", {"A.RAW"}};
        settings_.output_folder = folder_ / "out/";
        for (const char* name : {"in", "out", "bin", "store"}) {
            fs::create_directory(folder_ / name);
        }
        support::WriteFile(folder_ / "in/A.RAW", "");
    }

    Reach Find() const { return ReachOf(settings_, folder_ / "bin/sensdb.ini"); }

    support::TempFolder folder_;
    RunSettings settings_;
};

TEST_F(ReachTest, ReadsTheInputAndWritesTheOutputFolder) {
    const Reach reach = Find();
    EXPECT_EQ(reach.read_folders, Names{folder_ / "in/"});
    EXPECT_EQ(reach.written_folders, Names{folder_ / "out/"});
    EXPECT_EQ(reach.read_files, Names());
}

TEST_F(ReachTest, OfABareNameIsTheCurrentFolder) {
    settings_.input.folder = settings_.output_folder = "";
    const Reach reach = Find();
    EXPECT_EQ(reach.read_folders, Names{"./"});
    EXPECT_EQ(reach.written_folders, Names{"./"});
}

#if !defined(_WIN32)
TEST_F(ReachTest, OfNamesWithABackslashIsTheFolderThatContainsThem) {
    settings_.input.folder = "back\\";
    settings_.output_folder = folder_ / "out/back\\";
    const Reach reach = Find();
    EXPECT_EQ(reach.read_folders, Names{"./"});
    EXPECT_EQ(reach.written_folders, Names{folder_ / "out/"});
}
#endif

TEST_F(ReachTest, WithoutAnOutputFolderWritesTheInputFolder) {
    settings_.output_folder = "";
    EXPECT_EQ(Find().written_folders, Names{folder_ / "in/"});
}

TEST_F(ReachTest, IncludesTheLinksOfTheListedPictures) {
    fs::remove(folder_ / "in/A.RAW");
    for (const char* name :
         {"in/A.RAW", "in/A.JPG", "in/A.BIA", "in/A.DNG", "in/B.RAW", "out/A.DNG", "out/B.DNG"}) {
        fs::create_symlink("anywhere", folder_ / name);
    }
    EXPECT_EQ(Find().read_files, (Names{folder_ / "in/A.RAW", folder_ / "in/A.JPG", folder_ / "in/A.BIA",
                                        folder_ / "in/A.DNG", folder_ / "out/A.DNG"}));
}

TEST_F(ReachTest, IncludesTheFolderOfTheSensorDatabaseIfNeeded) {
    settings_.sensor_fix = true;
    EXPECT_EQ(Find().written_folders, (Names{folder_ / "out/", folder_ / "bin/"}));
}

TEST_F(ReachTest, IncludesTheFolderOfALinkedSensorDatabase) {
    fs::create_symlink("../store/mine.ini", folder_ / "bin/sensdb.ini");
    settings_.sensor_fix = true;
    const Names folders = Find().written_folders;
    ASSERT_EQ(folders.size(), 3U);
    EXPECT_EQ(folders[1], folder_ / "bin/");
    EXPECT_TRUE(fs::equivalent(folders[2], folder_ / "store")) << folders[2];
}

}  // namespace
