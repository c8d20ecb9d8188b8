// SPDX-License-Identifier: MIT
// Output files that are links: a file is written under the output name, and nothing else changes.
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "tests/end_to_end/card.h"
#include "tests/support/camera_dng.h"
#include "tests/support/files.h"
#include "tests/support/program.h"

namespace {

namespace fs = std::filesystem;
using end_to_end::Card;
using Bytes = std::vector<std::uint8_t>;
using Names = std::vector<std::string>;

const std::string kHeader = "\nImage: A.RAW\n\n";

/// A card with a pair A, and its DNG.
class LinkedOutput : public testing::Test {
  protected:
    void SetUp() override {
        card_.AddPair("A");
        ASSERT_EQ(card_.Run({}).status, 0);
        expected_ = support::ReadFile(card_ / "A.DNG");
        ASSERT_TRUE(fs::remove(card_ / "A.DNG"));
    }

    Bytes Content(const std::string& name) const { return support::ReadFile(card_ / name); }

    Card card_;
    Bytes expected_;
};

TEST_F(LinkedOutput, SymbolicLinkIsReplacedAndItsTargetKept) {
    fs::create_directory(card_ / "store");
    support::WriteFile(card_ / "store/picture", "old");
    fs::create_symlink("store/picture", card_ / "A.DNG");
    EXPECT_EQ(card_.Run({}).output, kHeader + "File A.DNG already exists!\n");
    EXPECT_TRUE(fs::is_symlink(card_ / "A.DNG"));
    EXPECT_EQ(card_.Run({"-r"}).output, kHeader);
    EXPECT_FALSE(fs::is_symlink(card_ / "A.DNG"));
    EXPECT_TRUE(Content("A.DNG") == expected_);
    EXPECT_EQ(support::ReadText(card_ / "store/picture"), "old");
    EXPECT_EQ(support::Names(card_ / "store"), Names{"picture"});
}

TEST_F(LinkedOutput, DanglingLinkIsNotFollowed) {
    fs::create_symlink("picture", card_ / "A.DNG");
    EXPECT_EQ(card_.Run({}).output, kHeader + "./A.DNG: DNG not written: File exists\n");
    EXPECT_TRUE(fs::is_symlink(card_ / "A.DNG"));
    EXPECT_FALSE(fs::exists(card_ / "picture"));
    EXPECT_EQ(card_.Run({"-r"}).output, kHeader);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(card_ / "A.DNG")));
    EXPECT_TRUE(Content("A.DNG") == expected_);
    EXPECT_FALSE(fs::exists(card_ / "picture"));
}

/// An attacker may pack such an archive to write a file outside of the folder.
TEST_F(LinkedOutput, LinkFromAnArchiveDoesNotReachOutsideTheFolder) {
    fs::create_directories(card_ / "made/evil");
    fs::create_directories(card_ / "home/.ssh");
    fs::create_directories(card_ / "home/downloads");
    for (const std::string extension : {".RAW", ".JPG"}) {
        fs::copy_file(card_ / ("A" + extension), card_ / ("made/evil/A" + extension));
    }
    fs::create_symlink("../../.ssh/authorized_keys", card_ / "made/evil/A.DNG");
    const std::string archive = card_ / "evil.tar";
    const auto run = [](const std::string& program, const std::vector<std::string>& arguments) {
        return support::RunProgram(program, arguments).status;
    };
    ASSERT_EQ(run("/usr/bin/tar", {"-C", card_ / "made", "-cf", archive, "evil"}), 0);
    ASSERT_EQ(run("/usr/bin/tar", {"-C", card_ / "home/downloads", "-xf", archive}), 0);
    for (const Names& options : {Names{}, Names{"-r"}}) {
        Names arguments = {"-i", "home/downloads/evil"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(card_.Run(arguments).status, 0);
        EXPECT_EQ(support::Names(card_ / "home/.ssh"), Names());
    }
}

TEST_F(LinkedOutput, HardLinkIsReplacedAndItsOtherNameKept) {
    support::WriteFile(card_ / "other", "old");
    fs::create_hard_link(card_ / "other", card_ / "A.DNG");
    EXPECT_EQ(card_.Run({"-r"}).output, kHeader);
    EXPECT_EQ(support::ReadText(card_ / "other"), "old");
    EXPECT_TRUE(Content("A.DNG") == expected_);
}

/// The camera's files are never written to.
TEST_F(LinkedOutput, LinkToAFileOfTheCameraLeavesThatFileUnchanged) {
    card_.AddDarkFrame("A", 100);
    card_.AddLinkedPair("B", "A");
    const Bytes raw = Content("A.RAW");
    const Bytes jpeg = Content("A.JPG");
    const Bytes dark = Content("A.BIA");
    fs::create_symlink("A.RAW", card_ / "link");
    for (const std::string& target :
         {std::string("A.RAW"), std::string("A.JPG"), std::string("A.BIA"), std::string("B.RAW"),
          std::string("B.JPG"), std::string("link"), card_ / "A.RAW"}) {
        fs::create_symlink(target, card_ / "A.DNG");
        EXPECT_EQ(card_.Run({"-i", "A", "-r"}).output, kHeader) << target;
        EXPECT_FALSE(fs::is_symlink(card_ / "A.DNG"));
        EXPECT_TRUE(Content("A.DNG") == expected_) << target;
        EXPECT_TRUE(fs::remove(card_ / "A.DNG"));
        EXPECT_TRUE(Content("A.RAW") == raw) << target;
        EXPECT_TRUE(Content("A.JPG") == jpeg) << target;
        EXPECT_TRUE(Content("A.BIA") == dark) << target;
    }
    for (const std::string target : {"A.RAW", "A.JPG"}) {
        fs::create_hard_link(card_ / target, card_ / "A.DNG");
        EXPECT_EQ(card_.Run({"-i", "A", "-r"}).output, kHeader) << target;
        EXPECT_TRUE(Content("A.DNG") == expected_);
        EXPECT_TRUE(fs::remove(card_ / "A.DNG"));
        EXPECT_TRUE(Content("A.RAW") == raw) << target;
        EXPECT_TRUE(Content("A.JPG") == jpeg) << target;
    }
}

/// A card with a camera DNG A.DNG, and its repaired version.
class LinkedRepair : public testing::Test {
  protected:
    void SetUp() override {
        camera_ = samples::Serialize(support::SmallCameraDng(64, 16));
        support::WriteFile(card_ / "A.DNG", camera_);
        fs::create_directory(card_ / "OUT");
        ASSERT_EQ(Run(), kRepaired);
        repaired_ = Content("OUT/A.DNG");
        ASSERT_FALSE(repaired_ == camera_);
        ASSERT_TRUE(fs::remove(card_ / "OUT/A.DNG"));
    }

    /// Repairs A.DNG into OUT. Returns what the run prints.
    std::string Run(const std::vector<std::string>& arguments = {}) const {
        Names all = {"-i", "A.DNG", "-o", "OUT"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const auto outcome = card_.Run(all);
        EXPECT_EQ(outcome.status, 0);
        return outcome.output;
    }

    Bytes Content(const std::string& name) const { return support::ReadFile(card_ / name); }

    static constexpr const char* kRepaired = "\nImage: A.DNG\n\n";
    static constexpr const char* kKept = "\nImage: A.DNG\n\nFile A.DNG already exists!\n";
    Card card_;
    Bytes camera_;
    Bytes repaired_;
};

TEST_F(LinkedRepair, IntoALinkToTheInputFolderNeedsRefresh) {
    fs::remove(card_ / "OUT");
    fs::create_symlink(".", card_ / "OUT");
    EXPECT_EQ(Run(), kKept);
    EXPECT_TRUE(Content("A.DNG") == camera_);
    EXPECT_EQ(Run({"-r"}), kRepaired);
    EXPECT_TRUE(Content("A.DNG") == repaired_);
    EXPECT_EQ(support::Names(card_.folder()), (Names{"A.DNG", "OUT"}));
}

TEST_F(LinkedRepair, OverASymbolicLinkToTheInputNeedsRefresh) {
    fs::create_symlink("../A.DNG", card_ / "OUT/A.DNG");
    EXPECT_EQ(Run(), kKept);
    EXPECT_TRUE(Content("A.DNG") == camera_);
    EXPECT_EQ(Run({"-r"}), kRepaired);
    EXPECT_FALSE(fs::is_symlink(card_ / "OUT/A.DNG"));
    EXPECT_TRUE(Content("OUT/A.DNG") == repaired_);
    EXPECT_TRUE(Content("A.DNG") == camera_);
}

TEST_F(LinkedRepair, OverAHardLinkToTheInputLeavesTheInputUnchanged) {
    fs::create_hard_link(card_ / "A.DNG", card_ / "OUT/A.DNG");
    EXPECT_EQ(Run(), kKept);
    EXPECT_EQ(Run({"-r"}), kRepaired);
    EXPECT_TRUE(Content("A.DNG") == camera_);
    EXPECT_TRUE(Content("OUT/A.DNG") == repaired_);
}

TEST_F(LinkedRepair, OfALinkLeavesTheLinkTargetUnchanged) {
    fs::create_directory(card_ / "links");
    fs::create_symlink("../A.DNG", card_ / "links/B.DNG");
    EXPECT_EQ(card_.Run({"-i", "links/B", "-o", "OUT"}).output, "\nImage: B.DNG\n\n");
    EXPECT_TRUE(Content("OUT/B.DNG") == repaired_);
    EXPECT_TRUE(Content("A.DNG") == camera_);
}

}  // namespace
