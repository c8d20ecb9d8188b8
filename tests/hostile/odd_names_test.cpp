// SPDX-License-Identifier: MIT
// Names are byte strings: pairs, camera DNGs and folders with unusual names are found, converted and printed
// correctly.
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

using end_to_end::Card;
using support::RunProgram;

/// The length of the longest name that common file systems allow, minus the extension.
constexpr std::size_t kLongestBase = 255 - 4;

const std::vector<std::string>& OddNames() {
    static const std::vector<std::string> names = {
        "two words",
        " ",
        "quote\"d it's",
        "new\nline",
        "return\r",
        "%s%n%99999999s%",
        "\xFF\xFE\x80 no UTF-8",
        "\xC3\xA4\xE2\x82\xAC",
        "\x1B[31m\a",
        "-r",
        "--",
        "several.dots.RAW.JPG",
        "*?[a-z]{x}~$HOME`x`",
        "back\\slash",
        std::string(kLongestBase, 'x'),
    };
    return names;
}

/// Names that are empty or only dots before the extension; as input they need the extension, or they would
/// name folders.
std::vector<std::string> OddBases() {
    std::vector<std::string> bases = OddNames();
    bases.insert(bases.end(), {"", ".", ".."});
    return bases;
}

TEST(OddName, PairGetsADngOfTheSameName) {
    Card card;
    card.AddPair("A");
    for (const std::string& base : OddBases()) {
        card.AddLinkedPair(base, "A");
    }
    const auto outcome = card.Run({});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.output.find("rror"), std::string::npos) << outcome.output;
    const auto expected = support::ReadFile(card / "A.DNG");
    EXPECT_EQ(end_to_end::RawPixels(support::TiffFile(expected)).size(), 3968U * 2646U);
    for (const std::string& base : OddBases()) {
        EXPECT_NE(outcome.output.find(": " + base + ".RAW\n\n"), std::string::npos) << base;
        EXPECT_TRUE(support::ReadFile(card / (base + ".DNG")) == expected) << base;
    }
    EXPECT_EQ(support::Names(card.folder()).size(), 3 * (OddBases().size() + 1));
}

TEST(OddName, PairCanBeGivenAsInput) {
    Card card;
    card.AddPair("A");
    for (const std::string& base : OddNames()) {
        card.AddLinkedPair(base, "A");
        // The program takes a backslash as a separator, so only the text after it is printed.
        const std::string shown = base == "back\\slash" ? "slash" : base;
        for (const std::string& input : {base, base + ".RAW"}) {
            const auto outcome = card.Run({"-i", input, "-r"});
            EXPECT_EQ(outcome.output, "\nImage: " + shown + ".RAW\n\n");
            EXPECT_TRUE(std::filesystem::remove(card / (base + ".DNG"))) << base;
        }
    }
}

TEST(OddName, RepairedDngHasTheSameName) {
    Card card;
    const auto dng = samples::Serialize(support::SmallCameraDng(64, 16));
    std::filesystem::create_directory(card / "OUT");
    support::WriteFile(card / "A.DNG", dng);
    ASSERT_EQ(card.Run({"-i", "A.DNG", "-o", "OUT"}).status, 0);
    const auto expected = support::ReadFile(card / "OUT/A.DNG");
    EXPECT_FALSE(expected.empty());
    for (const std::string& base : OddBases()) {
        const std::string shown = base == "back\\slash" ? "slash" : base;
        support::WriteFile(card / (base + ".DNG"), dng);
        const auto outcome = card.Run({"-i", base + ".DNG", "-o", "OUT"});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.output, "\nImage: " + shown + ".DNG\n\n");
        EXPECT_TRUE(support::ReadFile(card / ("OUT/" + shown + ".DNG")) == expected) << base;
    }
}

TEST(OddName, FolderOfCameraDngsIsSearched) {
    Card card;
    support::WriteFile(card / "A.DNG", samples::Serialize(support::FullCameraDng()));
    for (const std::string& base : OddBases()) {
        std::filesystem::create_hard_link(card / "A.DNG", card / (base + ".DNG"));
    }
    std::filesystem::create_directory(card / "OUT");
    const auto outcome = card.Run({"-i", card.folder(), "-o", "OUT"});
    EXPECT_EQ(outcome.status, 0);
    const auto expected = support::ReadFile(card / "OUT/A.DNG");
    for (const std::string& base : OddBases()) {
        EXPECT_TRUE(support::ReadFile(card / ("OUT/" + base + ".DNG")) == expected) << base;
    }
}

TEST(OddName, InputAndOutputFoldersMayHaveOddNames) {
    Card card;
    card.AddPair("A");
    for (const std::string& name : OddNames()) {
        const std::string input = "in " + name.substr(0, kLongestBase - 3);
        const std::string output = "-o " + name.substr(0, kLongestBase - 3);
        std::filesystem::create_directory(card / input);
        std::filesystem::create_directory(card / output);
        std::filesystem::rename(card / "A.RAW", card / (input + "/A.RAW"));
        std::filesystem::rename(card / "A.JPG", card / (input + "/A.JPG"));
        for (const std::string& path : {input, input + "/", input + "/A", input + "/A.RAW"}) {
            const auto outcome = card.Run({"-i", path, "-o", output});
            EXPECT_EQ(outcome.output, "\nImage: A.RAW\n\n") << path;
            EXPECT_TRUE(std::filesystem::remove(card / (output + "/A.DNG"))) << path;
        }
        std::filesystem::rename(card / (input + "/A.RAW"), card / "A.RAW");
        std::filesystem::rename(card / (input + "/A.JPG"), card / "A.JPG");
    }
}

TEST(OddName, FolderOfTheProgramMayHaveAnOddName) {
    const Card card;
    for (const std::string& name : OddNames()) {
        const std::string folder = card / name;
        std::filesystem::create_directory(folder);
        support::WriteFile(folder + "/lensdb.ini", "[100001]\nMaker = Maker\n");
        const auto run = [&](const std::string& program) {
            return RunProgram(VELMARCON_PROGRAM, {"-l"}, {.folder = card.folder(), .name = program}).status;
        };
        // With a lens database the run continues and finds no image; without one it ends with error 12.
        EXPECT_EQ(run(folder + "/velmarcon"), 1) << name;
        EXPECT_EQ(run(name + "/velmarcon"), 1) << name;
        std::filesystem::remove(folder + "/lensdb.ini");
        EXPECT_EQ(run(folder + "/velmarcon"), 12) << name;
    }
}

/// Expects every message that contains a name, for a pair called `name` in a folder called `name` on `card`.
void ExpectExactMessages(const Card& card, const std::string& name) {
    const std::string folder = card / name;
    const std::string path = folder + "/" + name;
    std::filesystem::create_directory(folder);
    std::filesystem::create_symlink("../A.RAW", path + ".RAW");
    const auto run = [&](const std::vector<std::string>& arguments) {
        return RunProgram(VELMARCON_PROGRAM, arguments, {.folder = folder, .name = folder + "/velmarcon"})
            .output;
    };
    const std::string header = "\nImage: " + name + ".RAW\n\n";
    EXPECT_EQ(run({"-v"}), header + "Reading " + name + ".JPG..." + name +
                               ".JPG: Error #0010: Unable to find JPG file.\n");

    std::filesystem::copy_file(card / "A.JPG", path + ".JPG");
    std::filesystem::create_directory(path + ".DNG");
    std::filesystem::create_directory(folder + "/sensdb.ini");
    EXPECT_EQ(run({"-sd"}),
              header + "Calculating new sensor level correction values for Camera 3106091 from image " +
                  name + ".RAW.\n" + folder +
                  "/sensdb.ini: sensor database not written: the file that is there could not be read\n./" +
                  name + ".DNG: DNG not written: Is a directory\n");

    std::filesystem::remove(path + ".DNG");
    support::WriteFile(path + ".DNG", "");
    EXPECT_EQ(run({}), header + "File " + name + ".DNG already exists!\n");
}

TEST(OddName, IsPrintedUnchangedInEveryMessage) {
    Card card;
    card.AddPair("A");
    for (const std::string& base : OddNames()) {
        SCOPED_TRACE(base);
        ExpectExactMessages(card, base.substr(0, 100));
    }
}

TEST(OddName, FolderPathTooLongForTheOutputIsReported) {
    Card card;
    card.AddPair("A");
    std::string deep = card.folder();
    constexpr std::size_t longest_path = 4096;  // including its NUL
    while (deep.size() + 2 + 200 < longest_path - 30) {
        deep += '/';
        deep.append(200, 'd');
    }
    deep += "/" + std::string(longest_path - 1 - deep.size() - 1 - 9, 'e');
    std::error_code error;
    if (!std::filesystem::create_directories(deep, error)) {
        GTEST_SKIP() << "the system does not allow paths of this length: " << error.message();
    }
    // The path of A.DNG fits, but that of its part file does not.
    const auto outcome = card.Run({"-o", deep});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "\nImage: A.RAW\n\n" + deep + "/A.DNG: DNG not written: File name too long\n");
}

}  // namespace
