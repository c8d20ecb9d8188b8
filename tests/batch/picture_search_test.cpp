// SPDX-License-Identifier: MIT
#include "batch/picture_search.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/input_discovery.h"
#include "batch/picture.h"
#include "batch/trees.h"
#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;
using namespace std::string_literals;

class PictureSearch : public testing::Test {
  protected:
    void File(const std::string& name, std::uintmax_t length = 0) {
        fs::create_directories(fs::path(folder_ / name).parent_path());
        support::WriteFile(folder_ / name, "");
        fs::resize_file(folder_ / name, length);
    }

    FoundPictures Find(const Words& only = {}) {
        trees_ = {{root_, root_, only}};
        return FindPictures(trees_);
    }

    static Words NamesOf(const std::vector<Picture>& pictures) {
        Words names;
        for (const Picture& picture : pictures) {
            names.push_back(picture.name);
        }
        return names;
    }

    const support::TempFolder folder_;
    const std::string root_ = fs::canonical(folder_.path()).string();
    std::vector<Tree> trees_;
};

TEST_F(PictureSearch, FindsPairsAndTheCamerasDngsInTheOrderOfTheirNames) {
    File("b/L2.RAW");
    File("a.RAW");
    File("a.JPG");
    File("L3.DNG", kCameraDngSize);
    File("L4.DNG", kCameraDngSize + 1);
    EXPECT_EQ(NamesOf(Find().pictures), (Words{"L3.DNG", "a.RAW", "b/L2.RAW"}));
}

TEST_F(PictureSearch, NamesWhatIsNearlyAPicture) {
    File("a.raw");
    File("b.dng", kCameraDngSize);
    File("c.dng", 5);
    File("d.DNG", kCameraDngSize - 1);
    const FoundPictures found = Find();
    EXPECT_TRUE(found.pictures.empty());
    EXPECT_EQ(found.small, (Words{root_ + "/a.raw", root_ + "/b.dng"}));
    EXPECT_EQ(found.cut, Words{root_ + "/d.DNG"});
}

TEST_F(PictureSearch, NamesJpegsWithoutARawFileWhereThereAreRawFiles) {
    File("card/L1.RAW");
    File("card/L1.JPG");
    File("card/L2.JPG");
    File("card/L3.JPG");
    File("card/L3.DNG", kCameraDngSize);
    File("card/L4.raw");
    File("card/L4.jpg");
    File("card/._L5.JPG");
    File("jpegs/L2.JPG");
    File("dngs/L6.JPG");
    File("dngs/L7.DNG", kCameraDngSize);
    EXPECT_EQ(Find().jpegs, Words{root_ + "/card/L2.JPG"});
}

TEST_F(PictureSearch, LooksOnlyAtWhatWasAskedFor) {
    File("L1.RAW");
    File("L2.RAW");
    File("below/L3.RAW");
    File("L4.DNG", kCameraDngSize + 1);
    const FoundPictures found = Find({"L2.RAW", "L4.DNG", "L5.RAW"});
    EXPECT_EQ(NamesOf(found.pictures), Words{"L2.RAW"});
    EXPECT_EQ(found.none, (Words{root_ + "/L4.DNG", root_ + "/L5.RAW"}));
}

TEST_F(PictureSearch, AListNamesPicturesByAnyOfTheirFiles) {
    File("a\nb.RAW");
    File("L2.RAW");
    File("L3.RAW");
    File("L4.DNG", kCameraDngSize);
    File("L5.DNG", kCameraDngSize);
    FoundPictures found = Find();
    const std::string list = folder_ / "a\nb.JPG" + '\0' + root_ + "/./L3.BIA\0"s + root_ + "/L4.DNG\0"s +
                             root_ + "/L5.JPG\0"s + root_ + "/L9.RAW";
    EXPECT_EQ(KeepListed(list, trees_, found), Words{root_ + "/L9.RAW"});
    EXPECT_EQ(NamesOf(found.pictures), (Words{"L3.RAW", "L4.DNG", "L5.DNG", "a\nb.RAW"}));
}

TEST_F(PictureSearch, WhatIsListedAndNoPictureIsNamedAsInTheList) {
    File("L1.RAW");
    FoundPictures found = Find();
    const std::string list = folder_ / "L1.JPG" + '\0' + root_ + "/./L2.JPG\0"s + root_ + "/L2.BIA\0"s +
                             root_ + "/L2.JPG\0"s + "gone/L1.JPG";
    EXPECT_EQ(KeepListed(list, trees_, found), (Words{root_ + "/L2.BIA", root_ + "/L2.JPG", "gone/L1.JPG"}));
    EXPECT_EQ(NamesOf(found.pictures), Words{"L1.RAW"});
}

TEST_F(PictureSearch, TheNewestComeFirst) {
    for (int day = 1; day <= 3; ++day) {
        const std::string name = "L" + std::to_string(day) + ".RAW";
        File(name);
        fs::last_write_time(folder_ / name, fs::file_time_type::clock::from_sys(
                                                std::chrono::sys_seconds(std::chrono::seconds(86400 * day))));
    }
    FoundPictures found = Find();
    SortNewestFirst(trees_, found.pictures);
    EXPECT_EQ(NamesOf(found.pictures), (Words{"L3.RAW", "L2.RAW", "L1.RAW"}));
}

TEST(PictureNames, AreTakenApartAtTheLastDotAndSeparator) {
    EXPECT_EQ(WithoutExtension("/a.b/c.d.RAW"), "/a.b/c.d");
    EXPECT_EQ(NameIn("/a.b/c.d.RAW"), "c.d.RAW");
    EXPECT_EQ(FolderIn("/a.b/c.d.RAW"), "/a.b/");
    EXPECT_EQ(FolderIn("c.RAW"), "");
    const std::vector<Tree> trees = {{"/in", "/out", {}}};
    EXPECT_EQ(InputOf({0, "x/a.RAW"}, trees), "/in/x/a.RAW");
    EXPECT_EQ(DngOf({0, "x/a.RAW"}, trees), "/out/x/a.DNG");
}

}  // namespace
