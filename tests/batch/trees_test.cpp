// SPDX-License-Identifier: MIT
#include "batch/trees.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "batch/batch_options.h"
#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

class TreesTest : public testing::Test {
  protected:
    TreesTest() {
        for (const char* name : {"a/DCIM/below", "b/DCIM"}) {
            fs::create_directories(folder_ / name);
        }
        for (const char* name :
             {"a/DCIM/L1.RAW", "a/DCIM/L1.JPG", "a/DCIM/L2.RAW", "b/DCIM/L3.RAW", "a/notes.txt"}) {
            support::WriteFile(folder_ / name, "");
        }
    }

    TreeError Resolve(const Words& names, const std::string& output = "") {
        BatchOptions options;
        for (const std::string& name : names) {
            options.folders.push_back(folder_ / name);
        }
        options.output = output.empty() ? "" : folder_ / output;
        trees_.clear();
        return ResolveTrees(options, true, trees_);
    }

    const support::TempFolder folder_;
    const std::string base_ = fs::canonical(folder_.path()).string();
    std::vector<Tree> trees_;
};

TEST_F(TreesTest, AFolderIsItsOwnOutput) {
    EXPECT_EQ(Resolve({"a/./DCIM/../DCIM/"}).text, "");
    ASSERT_EQ(trees_.size(), 1U);
    EXPECT_EQ(trees_[0].root, base_ + "/a/DCIM");
    EXPECT_EQ(trees_[0].out, trees_[0].root);
    EXPECT_TRUE(trees_[0].only.empty());
}

TEST_F(TreesTest, SeveralFoldersGetOneEachInTheOutput) {
    EXPECT_EQ(Resolve({"a", "b"}, "out").text, "");
    ASSERT_EQ(trees_.size(), 2U);
    EXPECT_EQ(trees_[1].out, base_ + "/out/b");
    EXPECT_TRUE(fs::is_directory(trees_[1].out));
    EXPECT_TRUE(Resolve({"a/DCIM", "b/DCIM"}, "out").text.starts_with("several folders are called DCIM"));
}

TEST_F(TreesTest, FoldersInEachOtherAreRefused) {
    EXPECT_TRUE(Resolve({"a", "a/DCIM"}).text.ends_with(" have pictures in common"));
    EXPECT_TRUE(Resolve({"a/DCIM", "a"}).is_usage);
}

TEST_F(TreesTest, FilesOfOnePictureAreOnePicture) {
    EXPECT_EQ(Resolve({"a/DCIM/L1.RAW", "a/DCIM/L1.JPG", "a/DCIM/L2.RAW", "b/DCIM/L3.RAW"}).text, "");
    ASSERT_EQ(trees_.size(), 2U);
    EXPECT_EQ(trees_[0].only, (Words{"L1.RAW", "L2.RAW"}));
    EXPECT_EQ(trees_[1].root, base_ + "/b/DCIM");
    EXPECT_EQ(trees_[1].only, Words{"L3.RAW"});
}

TEST_F(TreesTest, AFileOfNoPictureKeepsItsName) {
    for (const char* name : {"a/DCIM/L8.JPG", "a/DCIM/L8.BIA", "a/DCIM/L8.DNG"}) {
        support::WriteFile(folder_ / name, "");
    }
    EXPECT_EQ(Resolve({"a/DCIM/L8.JPG", "a/DCIM/L8.BIA", "a/DCIM/L8.DNG"}).text, "");
    ASSERT_EQ(trees_.size(), 1U);
    EXPECT_EQ(trees_[0].only, (Words{"L8.JPG", "L8.BIA", "L8.DNG"}));
}

TEST_F(TreesTest, AFileInAFolderThatIsSearchedAddsNothing) {
    for (const Words& names : {Words{"a", "a/DCIM/L1.RAW"}, Words{"a/DCIM/L1.JPG", "a"}}) {
        EXPECT_EQ(Resolve(names).text, "");
        ASSERT_EQ(trees_.size(), 1U);
        EXPECT_TRUE(trees_[0].only.empty());
    }
}

TEST_F(TreesTest, WhatIsNeitherIsRefused) {
    EXPECT_TRUE(
        Resolve({"a/notes.txt"}).text.ends_with("/a/notes.txt is neither a folder nor a file of a picture"));
    EXPECT_TRUE(Resolve({"a/L9.RAW"}).text.ends_with(" is neither a folder nor a file of a picture"));
    EXPECT_TRUE(Resolve({"a/L9.RAW"}).is_usage);
}

TEST_F(TreesTest, AnOutputThatCannotBeMadeIsTheSystemsFault) {
    const TreeError error = Resolve({"a"}, "a/notes.txt/out");
    EXPECT_TRUE(error.text.ends_with("/a/notes.txt/out cannot be made: Not a directory")) << error.text;
    EXPECT_FALSE(error.is_usage);
}

TEST(Paths, LieInThemselvesAndInWhatIsAbove) {
    EXPECT_TRUE(LiesIn("/a/b", "/a/b"));
    EXPECT_TRUE(LiesIn("/a/b", "/a"));
    EXPECT_TRUE(LiesIn("/a/b", "/"));
    EXPECT_FALSE(LiesIn("/ab", "/a"));
    EXPECT_FALSE(LiesIn("/a", "/a/b"));
}

}  // namespace
