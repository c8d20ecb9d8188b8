// SPDX-License-Identifier: MIT
// A run on a FAT file system finds a file that an interrupted run has set aside in order to replace it.
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "samples/camera_jpeg.h"
#include "tests/faults/faulty_run.h"
#include "tests/faults/stage.h"
#include "tests/support/files.h"
#include "tests/support/traced_program.h"

namespace faults {

namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class PutBack : public testing::Test {
  protected:
    void SetUp() override {
        const std::string obstacle = support::TracedProgram::Obstacle();
        if (!obstacle.empty()) {
            GTEST_SKIP() << obstacle;
        }
    }

    /// What a run prints, on FAT or on another file system.
    static std::string Print(const Stage& stage, const Names& arguments, bool on_fat = true) {
        Command run = stage.Run();
        run.arguments = arguments;
        run.on_fat = on_fat;
        return RunCleanly(run).outcome.output;
    }

    static void MoveAside(const std::string& path, const std::string& end = ".old") {
        fs::rename(path, path + end);
    }

    static std::string Line(const std::string& path, const std::string& end = ".old") {
        return path + ": restored from " + path + end + ": the run that was replacing it did not finish\n";
    }
};

TEST_F(PutBack, TheDngToBeWritten) {
    const Stage stage(ConversionOfConverted());
    const std::string dng = stage.Path("out/L1000001.DNG");
    MoveAside(dng);
    EXPECT_EQ(
        Print(stage, {"-i", "L1000001", "-o", "../out"}),
        "\nImage: L1000001.RAW\n\n" + Line("../out/L1000001.DNG") + "File L1000001.DNG already exists!\n");
    EXPECT_EQ(support::ReadText(dng), "an older one");
    EXPECT_EQ(support::Names(stage.Path("out")), Names{"L1000001.DNG"});
}

TEST_F(PutBack, TheFileThatWasSetAsideLast) {
    const Stage stage(ConversionOfConverted());
    const std::string dng = stage.Path("out/L1000001.DNG");
    MoveAside(dng, ".old2");
    support::WriteFile(dng + ".old", "somebody's own");
    EXPECT_EQ(Print(stage, {"-i", "L1000001", "-o", "../out"}), "\nImage: L1000001.RAW\n\n" +
                                                                    Line("../out/L1000001.DNG", ".old2") +
                                                                    "File L1000001.DNG already exists!\n");
    EXPECT_EQ(support::ReadText(dng), "an older one");
    EXPECT_EQ(support::ReadText(dng + ".old"), "somebody's own");
}

TEST_F(PutBack, NothingWhereADngExists) {
    const Stage stage(ConversionOfConverted());
    const std::string dng = stage.Path("out/L1000001.DNG");
    support::WriteFile(dng + ".old", "somebody's own");
    EXPECT_EQ(Print(stage, {"-i", "L1000001", "-o", "../out"}),
              "\nImage: L1000001.RAW\n\nFile L1000001.DNG already exists!\n");
    EXPECT_EQ(support::ReadText(dng + ".old"), "somebody's own");
}

/// The program sets no files aside there, so the file belongs to the user.
TEST_F(PutBack, NothingOnAFileSystemWithAJournal) {
    Stage stage(ConversionOfConverted());
    const std::string dng = stage.Path("out/L1000001.DNG");
    MoveAside(dng);
    EXPECT_EQ(Print(stage, {"-i", "L1000001", "-o", "../out"}, false), "\nImage: L1000001.RAW\n\n");
    EXPECT_EQ(support::ReadText(dng + ".old"), "an older one");
}

TEST_F(PutBack, TheDngToBeRead) {
    const Stage stage(RepairOverItself());
    const std::string dng = stage.Path("card/L1000001.DNG");
    const auto before = support::ReadFile(dng);
    for (const std::string name : {"L1000001.DNG", "L1000001"}) {
        MoveAside(dng);
        EXPECT_EQ(Print(stage, {"-i", name}),
                  Line("L1000001.DNG") + "\nImage: L1000001.DNG\n\nFile L1000001.DNG already exists!\n");
        EXPECT_TRUE(support::ReadFile(dng) == before);
    }
}

TEST_F(PutBack, TheDngsOfAFolder) {
    constexpr std::uintmax_t camera_size = 10575296;
    const Stage stage(RepairOverItself());
    const std::string dng = stage.Path("card/L1000001.DNG");
    fs::resize_file(dng, camera_size);
    MoveAside(dng);
    support::WriteFile(stage.Path("card/A.DNG.old"), "of another size");
    const std::string output = Print(stage, {"-i", "."});
    EXPECT_NE(output.find(Line("./L1000001.DNG")), std::string::npos) << output;
    EXPECT_NE(output.find(Line("./A.DNG")), std::string::npos) << output;
    EXPECT_TRUE(output.ends_with("\nImage: L1000001.DNG\n\nFile L1000001.DNG already exists!\n")) << output;
    EXPECT_EQ(support::Names(stage.Path("card")), (Names{"A.DNG", "L1000001.DNG"}));
}

TEST_F(PutBack, TheSensorDatabase) {
    Stage stage(DarkReference());
    const std::string database = stage.Path("bin/sensdb.ini");
    MoveAside(database);
    const std::string output = Print(stage, {"-i", "L1000001", "-o", "../out", "-s", "-r"});
    EXPECT_NE(output.find(Line(database)), std::string::npos) << output;
    EXPECT_TRUE(fs::exists(database));
}

}  // namespace

}  // namespace faults
