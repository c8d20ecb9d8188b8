// SPDX-License-Identifier: MIT
#include "packaging/path_remarks.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/input_discovery.h"
#include "tests/app/working_folder.h"
#include "tests/support/files.h"

namespace {

namespace fs = std::filesystem;

using Texts = std::vector<std::string>;

Texts RemarksOnPathsOf(Texts line) {
    line.insert(line.begin(), "velmarcon");
    std::vector<char*> argv;
    std::ranges::transform(line, std::back_inserter(argv), [](std::string& text) { return text.data(); });
    return RemarksOnPaths(ReadCommandLine(argv));
}

/// The folder "card" holds L1.RAW and L1.JPG, "small" L1.raw, "camera" a DNG as long as the camera's, "own"
/// one that is shorter; "dng" and the current folder hold no picture.
class RemarksOnPathsIn : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* name : {"card", "small", "camera", "own", "dng"}) {
            fs::create_directory(name);
        }
        for (const char* name :
             {"card/L1.RAW", "card/L1.JPG", "small/L1.raw", "camera/L2.DNG", "own/L1.DNG"}) {
            MakeFile(name);
        }
        fs::resize_file("camera/L2.DNG", kCameraDngSize);
    }

    const support::TempFolder folder_;
    const WorkingFolder working_{folder_.path()};
};

TEST_F(RemarksOnPathsIn, AreNoneOnPathsThatCanBeUsed) {
    for (const char* input : {"card", "card/L1", "card/L1.RAW", "own/L1", "dng/."}) {
        EXPECT_EQ(RemarksOnPathsOf({"-i", input, "-o", "dng"}), Texts()) << input;
    }
    EXPECT_EQ(RemarksOnPathsOf({"-i", "camera", "-o", "dng"}), Texts());
    EXPECT_EQ(RemarksOnPathsOf({"-i", "camera", "-r"}), Texts());
    EXPECT_EQ(RemarksOnPathsOf({"-i", "own/L1.DNG"}), Texts());
}

TEST_F(RemarksOnPathsIn, NameAnInputThatIsNotThere) {
    EXPECT_EQ(RemarksOnPathsOf({"-i", "../crad"}), Texts{"../crad: there is no such file or folder"});
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card/L2"}), Texts{"card/L2: there is no such file or folder"});
    EXPECT_EQ(RemarksOnPathsOf({"-i", "my card"}), Texts{"'my card': there is no such file or folder"});
}

TEST_F(RemarksOnPathsIn, LeaveADngThatARunHasSetAsideToTheProgram) {
    MakeFile("card/L3.DNG.old");
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card/L3", "-o", "dng"}), Texts());
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card/L3.DNG", "-o", "dng"}), Texts());
}

TEST_F(RemarksOnPathsIn, NameAnOutputFolderThatIsNotThere) {
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card", "-o", "../dgn"}), Texts{"../dgn: there is no such folder"});
}

TEST_F(RemarksOnPathsIn, TellOfAFileInPlaceOfTheOutputFolder) {
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card", "-o", "own/L1.DNG"}),
              Texts{"own/L1.DNG: this is not a folder; -o names the folder for the DNGs"});
    fs::create_symlink("circle", "circle");  // cannot be looked at, as what lies in another's private folder
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card", "-o", "circle"}), Texts());
}

TEST_F(RemarksOnPathsIn, TellOfAFolderThatHasPicturesOnlyInFoldersBelow) {
    fs::create_directories("DCIM/100LEICA");
    EXPECT_EQ(RemarksOnPathsOf({"-i", "DCIM"}),
              Texts{"DCIM: there is no picture in it; for the folders below it use velmarcon-batch"});
}

TEST_F(RemarksOnPathsIn, TellOfDngsThatAreOnlyTakenByName) {
    EXPECT_EQ(RemarksOnPathsOf({"-i", "own", "-o", "dng"}),
              Texts{"own: its DNGs do not have the camera's 10575296 bytes: name each by itself"});
    fs::resize_file("own/L1.DNG", kLargestSingleDng + 1);
    EXPECT_EQ(RemarksOnPathsOf({"-i", "own", "-o", "dng"}), Texts());
}

TEST_F(RemarksOnPathsIn, TellOfAJpegInPlaceOfTheRawFile) {
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card/L1.JPG"}), Texts{"card/L1.JPG: name the RAW file, not the JPEG"});
}

TEST_F(RemarksOnPathsIn, TellOfSmallLetters) {
    const std::string rule = ": names must end in .RAW, in capital letters";
    EXPECT_EQ(RemarksOnPathsOf({"-i", "small"}), Texts{"small" + rule});
    EXPECT_EQ(RemarksOnPathsOf({"-i", "small/L1.raw"}), Texts{"small/L1.raw" + rule});
    EXPECT_EQ(RemarksOnPathsOf({"-i", "small/L1"}), Texts{"small/L1" + rule});
    MakeFile("small/L2.RAW");
    EXPECT_EQ(RemarksOnPathsOf({"-i", "small"}), Texts());
}

TEST_F(RemarksOnPathsIn, TellOfSmallLettersOfAJpeg) {
    const std::string rule = ": names must end in .JPG, in capital letters";
    for (const char* name : {"card/L2.RAW", "card/L2.Jpg", "card/L3.RAW"}) {
        MakeFile(name);
    }
    for (const char* input : {"card", "card/", "card/L2", "card/L2.RAW"}) {
        EXPECT_EQ(RemarksOnPathsOf({"-i", input}), Texts{"card/L2.Jpg" + rule}) << input;
    }
    MakeFile("card/L3.jpg");
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card"}), Texts{"card/L2.Jpg and 1 more" + rule});
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card/L3"}), Texts{"card/L3.jpg" + rule});
    MakeFile("my L4.RAW");
    MakeFile("my L4.jpg");
    EXPECT_EQ(RemarksOnPathsOf({"-b"}), Texts{"'my L4.jpg'" + rule});
    EXPECT_EQ(RemarksOnPathsOf({"-i", "my L4"}), Texts{"'my L4.jpg'" + rule});
}

TEST_F(RemarksOnPathsIn, AreNoneOnAJpegInSmallLettersThatIsNotLookedFor) {
    MakeFile("card/L1.jpg");  // next to L1.JPG
    MakeFile("card/L2.jpg");  // next to no RAW file
    MakeFile("camera/L2.jpg");
    for (const char* input : {"card", "card/L1", "camera"}) {
        EXPECT_EQ(RemarksOnPathsOf({"-i", input, "-o", "dng"}), Texts()) << input;
    }
    MakeFile("card/L3.RAW");
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card/L3"}), Texts());
}

TEST_F(RemarksOnPathsIn, TellWhyThereIsOnlyTheUsage) {
    EXPECT_EQ(RemarksOnPathsOf({"-b"}),
              Texts{"no picture in the current folder: name one with -i, see velmarcon --help"});
    MakeFile("L1.raw");
    EXPECT_EQ(RemarksOnPathsOf({}),
              Texts{"no picture in the current folder: names must end in .RAW, in capital letters"});
    MakeFile("L1.RAW");
    EXPECT_EQ(RemarksOnPathsOf({"-b"}), Texts());
}

TEST_F(RemarksOnPathsIn, TellWhereCameraDngsAreRepaired) {
    const std::string rule = ": DNGs are repaired into another folder with -o, or in place with -r";
    for (const std::string input : {"camera", "camera/L2", "camera/L2.DNG"}) {
        EXPECT_EQ(RemarksOnPathsOf({"-i", input, "-s"}), Texts{input + rule});
    }
}

TEST_F(RemarksOnPathsIn, AreNoneOnAPathThatWasNotMeant) {
    EXPECT_EQ(RemarksOnPathsOf({"-i../card", "-o", "../dng"}), Texts());
    EXPECT_EQ(RemarksOnPathsOf({"-i", "card", "-odng", "-v"}), Texts());
}

}  // namespace
