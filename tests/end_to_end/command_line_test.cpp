// SPDX-License-Identifier: MIT
// How the program is started, what it prints, and how it ends.
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/end_to_end/card.h"
#include "tests/support/files.h"
#include "tests/support/program.h"

namespace {

using end_to_end::Card;
using support::RunProgram;
using support::Start;

constexpr const char* kUsage =
    "###################\n"
    "# velmarcon v" VELMARCON_VERSION
    " #\n"
    R"(###################
Program converts Leica M8 RAW+JPEG pairs to DNG.

Usage: velmarcon.exe -par1 val1 -par2 val2 ...

Par  [vals]/<opt>  meaning                           {defval}:

-i   [folder/file] input                             {path to executable}
-o   [folder]      output                            {input folder}
-v                 verbose
-r                 refresh: overwrite existing DNG
-p                 preview image in DNG
-b   <val>         blacklevel set                    {val=92}
-l   <6bit>        lens exif fix                     {code from exif}
-s                 sensor errors fix
-sd                sensor darkfield creation
-st                sensor test pixel line fix

The manual, with examples for every option, is the file README.md.
Copyright (c) 2026 the velmarcon authors, MIT License.

)";

constexpr const char* kLensSection =
    "[100001]\nMaker = Maker\nModel = Model\nFocalLength = 50\nAperture = 2\n";

void ExpectOutcome(const support::Outcome& outcome, int status, const std::string& output) {
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.output, output);
    EXPECT_EQ(outcome.errors, "");
}

/// Puts the program under its usual name into a folder, where it looks for its databases.
std::string Install(const support::TempFolder& folder) {
    std::filesystem::copy_file(VELMARCON_PROGRAM, folder / "velmarcon");
    return folder / "velmarcon";
}

TEST(CommandLine, WithoutArgumentsAndImagesPrintsTheUsage) {
    const Card card;
    ExpectOutcome(card.Run({}), 1, kUsage);
}

TEST(CommandLine, WithArgumentsButWithoutImagesPrintsTheUsage) {
    const Card card;
    ExpectOutcome(card.Run({"-v", "-x", "-d", "word"}), 1, kUsage);
}

TEST(CommandLine, WithoutArgumentsConvertsTheCurrentFolder) {
    Card card;
    card.AddPair("L1000001");
    ExpectOutcome(card.Run({}), 0, "\nImage: L1000001.RAW\n\n");
    EXPECT_EQ(support::Names(card.folder()),
              (std::vector<std::string>{"L1000001.DNG", "L1000001.JPG", "L1000001.RAW"}));
}

TEST(CommandLine, VerboseNamesEachStep) {
    Card card;
    card.AddPair("L1000001");
    ExpectOutcome(card.Run({"-verbose", "-b", "-p"}), 0,
                  "\nImage: L1000001.RAW\n\n"
                  "Reading L1000001.JPG...Done!\n"
                  "Reading L1000001.RAW...Done!\n"
                  "Calculating blacklevel...Done!\n"
                  "Writing DNG header...Done!\n"
                  "Writing image data...Done!\n");
}

TEST(CommandLine, WrongInputIsError2) {
    Card card;
    support::WriteFile(card / "photo.jpg", "no image");
    for (const std::string input : {"nothing", "photo.jpg", ""}) {
        ExpectOutcome(card.Run({"-i", input}), 2,
                      "Error #0002: Given input (-i) is not a folder or supported RAW file.\n");
    }
}

TEST(CommandLine, FolderWithoutImagesIsError5) {
    const Card card;
    ExpectOutcome(card.Run({"-i", card.folder(), "-v"}), 5, "Error #0005: No RAW files found in folder.\n");
}

TEST(CommandLine, LongDngIsError19WithItsName) {
    Card card;
    support::WriteFile(card / "L1000001.DNG", "");
    std::filesystem::resize_file(card / "L1000001.DNG", 15000001);
    for (const std::string& input : {card / "L1000001", card / "L1000001.DNG", std::string("L1000001")}) {
        ExpectOutcome(card.Run({"-i", input}), 19,
                      "L1000001.DNG: Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.\n");
    }
}

TEST(CommandLine, MissingOutputFolderIsError4BeforeLaterOptionsAreRead) {
    Card card;
    card.AddLinkedPair("L1000001", "nothing");
    ExpectOutcome(card.Run({"-o", "nosuchdir", "-i", "nothing"}), 4,
                  "Error #0004: Given output folder (-o) does not exist or is no folder.\n");
    ExpectOutcome(card.Run({"-i", "nothing", "-o", "nosuchdir"}), 2,
                  "Error #0002: Given input (-i) is not a folder or supported RAW file.\n");
    ExpectOutcome(card.Run({"-o", ""}), 4,
                  "Error #0004: Given output folder (-o) does not exist or is no folder.\n");
}

TEST(CommandLine, LensFixWithoutDatabaseIsError12EvenWithoutImages) {
    const Card card;
    ExpectOutcome(card.Run({"-l"}), 12, "Error #0012: Missing lens database file lensdb.ini.\n");
}

TEST(CommandLine, PathsMayBeAbsoluteOrRelativeWithOrWithoutSeparatorAndExtension) {
    Card card;
    card.AddPair("L1000001");
    const support::TempFolder output;
    const std::string parent = card.folder() + "/..";
    const std::string name = std::filesystem::path(card.folder()).filename().string();
    for (const std::string& input : {card.folder(), card.folder() + "/", card / "L1000001",
                                     card / "L1000001.RAW", name, name + "/L1000001"}) {
        for (const std::string& target : {output.path().string(), output.prefix()}) {
            const auto outcome =
                RunProgram(VELMARCON_PROGRAM, {"-i", input, "-o", target}, {.folder = parent});
            ExpectOutcome(outcome, 0, "\nImage: L1000001.RAW\n\n");
            EXPECT_TRUE(std::filesystem::remove(output / "L1000001.DNG")) << input << " " << target;
        }
    }
}

TEST(CommandLine, BareFileNameIsConvertedInItsOwnFolder) {
    Card card;
    card.AddPair("L1000001");
    ExpectOutcome(card.Run({"-i", "L1000001.RAW"}), 0, "\nImage: L1000001.RAW\n\n");
    EXPECT_TRUE(std::filesystem::exists(card / "L1000001.DNG"));
}

/// The program looks for its databases in the folder part of its own name; LensMake shows which database was
/// found.
TEST(ProgramFolder, IsTheFolderInTheProgramName) {
    const support::TempFolder outer;
    const std::filesystem::path folder = outer.path() / "programs";
    std::filesystem::create_directory(folder);
    std::filesystem::copy_file(VELMARCON_PROGRAM, folder / "velmarcon");
    support::WriteFile(folder / "lensdb.ini", kLensSection);
    const Card card;
    // With a lens database the run continues and finds no image; without one it would end with error 12.
    EXPECT_EQ(RunProgram(folder / "velmarcon", {"-l"}, {.folder = card.folder()}).status, 1);
    EXPECT_EQ(RunProgram("programs/velmarcon", {"-l"}, {.folder = outer.path().string()}).status, 1);
    EXPECT_EQ(RunProgram("./velmarcon", {"-l"}, {.folder = folder.string()}).status, 1);
}

TEST(ProgramFolder, IsTheCurrentFolderForAProgramFoundInPath) {
    const support::TempFolder folder;
    Install(folder);
    support::WriteFile(folder / "lensdb.ini", kLensSection);
    const Card card;
    const Start start = {
        .folder = card.folder(), .through_path = true, .variables = {"PATH=" + folder.path().string()}};
    EXPECT_EQ(RunProgram("velmarcon", {"-l"}, start).status, 12);
    support::WriteFile(card / "lensdb.ini", kLensSection);
    EXPECT_EQ(RunProgram("velmarcon", {"-l"}, start).status, 1);
}

TEST(ProgramFolder, IsTheCurrentFolderForAProgramAtTheRoot) {
    const Card card;
    support::WriteFile(card / "lensdb.ini", kLensSection);
    EXPECT_EQ(RunProgram(VELMARCON_PROGRAM, {"-l"}, {.folder = card.folder(), .name = "/velmarcon"}).status,
              1);
}

}  // namespace
