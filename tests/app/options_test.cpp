// SPDX-License-Identifier: MIT
#include "app/options.h"

#include <algorithm>
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

#include "tests/app/parsed_options.h"
#include "tests/app/working_folder.h"
#include "tests/support/capture_stdout.h"
#include "tests/support/files.h"

namespace {

using Texts = std::vector<std::string>;

TEST(ExecutableFolder, IsTheProgramsPathUpToItsLastSeparator) {
    struct Case {
        const char* program;
        const char* folder;
    };
    for (const auto& [program, folder] : {
             Case{"/usr/bin/velmarcon", "/usr/bin/"},
             Case{"./velmarcon", "./"},
             Case{"../x/velmarcon", "../x/"},
             Case{"C:\\tools\\velmarcon.exe", "C:\\tools\\"},
             Case{"C:\\tools/velmarcon.exe", "C:\\tools/"},
             Case{"C:/tools\\velmarcon.exe", "C:/tools\\"},
             Case{"x\\velmarcon", "x\\"},
             Case{"velmarcon", ""},
             Case{"", ""},
             Case{"/velmarcon", "./"},
             Case{"\\velmarcon", "./"},
             Case{"/", "./"},
             Case{"//velmarcon", "//"},
         }) {
        EXPECT_EQ(ExecutableFolder(program), folder) << program;
    }
}

/// The current folder holds a.RAW; the folder "in" holds b.RAW and c.RAW; "out" and "none" are empty.
class Options : public testing::Test {
  protected:
    void SetUp() override {
        MakeFile("a.RAW");
        for (const char* name : {"in", "out", "none", "-v", "-dash"}) {
            std::filesystem::create_directory(name);
        }
        MakeFile("in/b.RAW");
        MakeFile("in/c.RAW");
        MakeFile("-dash/d.RAW");
        MakeFile("in/photo.jpg");
        MakeFile("in/over.DNG", 15000001);
    }

    const support::TempFolder folder_;
    const WorkingFolder working_{folder_.path()};
};

struct FlagCase {
    const char* name;
    Texts arguments;
    const char* changed;

    friend void PrintTo(const FlagCase& test, std::ostream* out) { *out << test.name; }
};

class Flags : public Options, public testing::WithParamInterface<FlagCase> {};

TEST_P(Flags, AreSwitchedOnByTheirOptions) {
    const Parsed parsed = Parse(GetParam().arguments);
    EXPECT_EQ(parsed.status, 0);
    EXPECT_EQ(parsed.output, "");
    EXPECT_EQ(Changed(parsed.settings), GetParam().changed);
    EXPECT_EQ(parsed.settings.input.names, Texts{"a.RAW"});
}

const std::vector<FlagCase> kFlagCases = {
    {"None", {}, ""},
    {"Verbose", {"-v"}, "verbose "},
    {"Refresh", {"-r"}, "refresh "},
    {"Preview", {"-p"}, "preview "},
    {"Variant", {"-c"}, "variant "},
    {"OnlyTheFirstLetterCounts", {"-verbose", "-pixel", "-rs"}, "verbose refresh preview "},
    {"All",
     {"-v", "-r", "-p", "-b", "1", "-l", "000001", "-sd", "-st", "-sb", "-c"},
     "verbose refresh preview black 1 lens 000001 sensor dark create test rows variant "},
    {"Repeated", {"-v", "-v", "-r", "-r", "-s", "-s"}, "verbose refresh sensor dark "},

    {"Sensor", {"-s"}, "sensor dark "},
    {"SensorCreation", {"-sd"}, "sensor dark create "},
    {"SensorTest", {"-st"}, "sensor dark test "},
    {"SensorRows", {"-sb"}, "sensor dark rows "},
    {"SensorOtherLetter", {"-sx"}, "sensor dark "},
    {"SensorOnlyOneLetter", {"-sdtb"}, "sensor dark create "},
    {"SensorFlagsAddUp", {"-sd", "-s", "-st"}, "sensor dark create test "},

    {"Unknown", {"-x", "-d", "-a", "-w", "-V", "-I", "--", "--verbose", "-1", "-\xFF"}, ""},
    {"EveryUnknownLetter",
     {"-a", "-d", "-e", "-f", "-g", "-h", "-j", "-k", "-m", "-n", "-q", "-t", "-u", "-z"},
     ""},
    {"NoOptions", {"word", "v", "", "-"}, ""},

    {"BlackLevel", {"-b", "120"}, "black 120 "},
    {"BlackLevelAlone", {"-b"}, "black "},
    {"BlackLevelBeforeAnOption", {"-b", "-v"}, "verbose black "},
    {"BlackLevelDashLed", {"-b", "-5"}, "black "},
    {"BlackLevelDash", {"-b", "-"}, "black "},
    {"BlackLevelZero", {"-b", "0"}, "black 0 "},
    {"BlackLevelOf17Bits", {"-b", "70000"}, "black 4464 "},
    {"BlackLevelOf16Bits", {"-b", "65535"}, "black 65535 "},
    {"BlackLevelJustOver16Bits", {"-b", "65536"}, "black 0 "},
    {"BlackLevelHuge", {"-b", "99999999999999999999"}, "black 65535 "},
    {"BlackLevelNoNumber", {"-b", "high"}, "black 0 "},
    {"BlackLevelEmpty", {"-b", ""}, "black 0 "},
    {"BlackLevelNumberThenText", {"-b", "12x"}, "black 12 "},
    {"BlackLevelWithSpaceAndSign", {"-b", " +7"}, "black 7 "},
    {"BlackLevelNegativeBehindASpace", {"-b", " -1"}, "black 65535 "},
    {"BlackLevelIsDecimal", {"-b", "0x10"}, "black 0 "},
    {"FirstBlackLevelCounts", {"-b", "7", "-b", "8"}, "black 7 "},
    {"FirstBlackLevelCountsWithoutAValue", {"-b", "-b", "8"}, "black "},

    {"Lens", {"-l", "000001"}, "lens 000001 "},
    {"LensAlone", {"-l"}, "lens "},
    {"LensBeforeAnOption", {"-l", "-v"}, "verbose lens "},
    {"LensCodeIsNotChecked", {"-l", "nonsense"}, "lens nonsense "},
    {"LensCodeEmpty", {"-l", "", "-v"}, "verbose lens "},
    {"FirstLensCodeCounts", {"-l", "000001", "-l", "000010"}, "lens 000001 "},
    {"FirstLensCountsWithoutACode", {"-l", "-l", "000010"}, "lens "},

    {"InputWithoutAValue", {"-v", "-i"}, "verbose "},
    {"OutputWithoutAValue", {"-v", "-o"}, "verbose "},
};

INSTANTIATE_TEST_SUITE_P(CommandLines, Flags, testing::ValuesIn(kFlagCases),
                         testing::PrintToStringParamName());

struct FolderCase {
    const char* name;
    Texts arguments;
    const char* input;
    Texts names;
    const char* output;
    const char* changed;

    friend void PrintTo(const FolderCase& test, std::ostream* out) { *out << test.name; }
};

class Folders : public Options, public testing::WithParamInterface<FolderCase> {};

TEST_P(Folders, AreTheOnesGivenFirst) {
    const auto& [name, arguments, input, names, output, changed] = GetParam();
    Parsed parsed = Parse(arguments);
    EXPECT_EQ(parsed.status, 0);
    EXPECT_EQ(parsed.output, "");
    EXPECT_EQ(parsed.settings.input.folder, input);
    std::ranges::sort(parsed.settings.input.names);
    EXPECT_EQ(parsed.settings.input.names, names);
    EXPECT_EQ(parsed.settings.output_folder, output);
    EXPECT_EQ(Changed(parsed.settings), changed);
}

const std::vector<FolderCase> kFolderCases = {
    {"Default", {}, "./", {"a.RAW"}, "./", ""},
    {"DefaultWithOptions", {"-v"}, "./", {"a.RAW"}, "./", "verbose "},
    {"Input", {"-i", "in"}, "in/", {"b.RAW", "c.RAW"}, "in/", ""},
    {"InputWithSeparator", {"-i", "in/"}, "in/", {"b.RAW", "c.RAW"}, "in/", ""},
    {"InputByItsFirstLetter", {"-input", "in"}, "in/", {"b.RAW", "c.RAW"}, "in/", ""},
    {"InputFile", {"-i", "in/b"}, "in/", {"b.RAW"}, "in/", ""},
    {"BareInputFile", {"-i", "a.RAW"}, "", {"a.RAW"}, "", ""},
    {"Output", {"-o", "out"}, "./", {"a.RAW"}, "out/", ""},
    {"OutputWithSeparator", {"-o", "out/"}, "./", {"a.RAW"}, "out/", ""},
    {"OutputOfABareInputFile", {"-i", "a.RAW", "-o", "out"}, "", {"a.RAW"}, "out/", ""},
    {"OutputBeforeInput", {"-o", "out", "-i", "in"}, "in/", {"b.RAW", "c.RAW"}, "out/", ""},
    {"DashLedInput", {"-i", "-dash", "-p"}, "-dash/", {"d.RAW"}, "-dash/", "preview "},
    {"DashLedOutput", {"-o", "-v"}, "./", {"a.RAW"}, "-v/", ""},
    {"FirstInputCounts", {"-i", "in/b", "-i", "in/c", "-v"}, "in/", {"b.RAW"}, "in/", "verbose "},
    {"FirstOutputCounts", {"-o", "out", "-o", "none"}, "./", {"a.RAW"}, "out/", ""},
    {"LaterInputIsNotEvenLookedAt", {"-i", "in/b", "-i", "missing"}, "in/", {"b.RAW"}, "in/", ""},
    {"LaterOutputIsNotEvenLookedAt", {"-o", "out", "-o", "missing"}, "./", {"a.RAW"}, "out/", ""},
    {"ValueOfALaterInputIsAnArgument", {"-i", "in/b", "-i", "-v"}, "in/", {"b.RAW"}, "in/", "verbose "},
    {"ValueOfALaterOutputIsAnArgument", {"-o", "out", "-o", "-p"}, "./", {"a.RAW"}, "out/", "preview "},
    {"ValuesAreNoOptions", {"-i", "-dash", "-o", "-v"}, "-dash/", {"d.RAW"}, "-v/", ""},
};

INSTANTIATE_TEST_SUITE_P(CommandLines, Folders, testing::ValuesIn(kFolderCases),
                         testing::PrintToStringParamName());

constexpr const char* kBadInput = "Error #0002: Given input (-i) is not a folder or supported RAW file.\n";
constexpr const char* kBadOutput = "Error #0004: Given output folder (-o) does not exist or is no folder.\n";
constexpr const char* kNoFiles = "Error #0005: No RAW files found in folder.\n";
constexpr const char* kNoLenses = "Error #0012: Missing lens database file lensdb.ini.\n";
constexpr const char* kTooLarge =
    "over.DNG: Error #0019: File was created from RAW+JPG or is not a Leica M8 DNG.\n";

struct ErrorCase {
    const char* name;
    Texts arguments;
    int status;
    const char* output;
    const char* changed;  ///< by the options read before the error

    friend void PrintTo(const ErrorCase& test, std::ostream* out) { *out << test.name; }
};

class FatalErrors : public Options, public testing::WithParamInterface<ErrorCase> {};

TEST_P(FatalErrors, EndTheRunWhereTheyOccur) {
    const Parsed parsed = Parse(GetParam().arguments, false);
    EXPECT_EQ(parsed.status, GetParam().status);
    EXPECT_EQ(parsed.output, GetParam().output);
    EXPECT_EQ(Changed(parsed.settings), GetParam().changed);
}

const std::vector<ErrorCase> kErrorCases = {
    {"Input", {"-p", "-i", "missing", "-v"}, 2, kBadInput, "preview "},
    {"EmptyInput", {"-i", "", "-v"}, 2, kBadInput, ""},
    {"InputOfAnotherSort", {"-i", "in/photo.jpg"}, 2, kBadInput, ""},
    {"DashLedInput", {"-i", "-x"}, 2, kBadInput, ""},
    {"Output", {"-o", "missing", "-v"}, 4, kBadOutput, ""},
    {"OutputIsAFile", {"-o", "a.RAW"}, 4, kBadOutput, ""},
    {"EmptyOutput", {"-o", ""}, 4, kBadOutput, ""},
    {"NoFiles", {"-i", "none", "-v"}, 5, kNoFiles, ""},
    {"TooLarge", {"-i", "in/over", "-v"}, 19, kTooLarge, ""},
    {"NoLenses", {"-l", "000001", "-v"}, 12, kNoLenses, "verbose lens 000001 "},
    {"InputBeforeOutput", {"-i", "missing", "-o", "missing"}, 2, kBadInput, ""},
    {"OutputBeforeInput", {"-o", "missing", "-i", "missing"}, 4, kBadOutput, ""},
    {"InputBeforeLenses", {"-l", "-i", "none"}, 5, kNoFiles, "lens "},
};

INSTANTIATE_TEST_SUITE_P(CommandLines, FatalErrors, testing::ValuesIn(kErrorCases),
                         testing::PrintToStringParamName());

/// There is nothing to convert in the current folder.
class EmptyFolder : public testing::Test {
  protected:
    /// The status of a run that prints the usage; -1 if it prints something else.
    static int UsageStatus(const Texts& arguments) {
        const Parsed parsed = Parse(arguments);
        const std::string usage = support::CaptureStdout([] { ErrorHandler().UsageText(); });
        return parsed.output == usage ? parsed.status : -1;
    }

    const support::TempFolder folder_;
    const WorkingFolder working_{folder_.path()};
};

TEST_F(EmptyFolder, PrintsTheUsage) {
    EXPECT_EQ(UsageStatus({}), 1);
    EXPECT_EQ(UsageStatus({"-v"}), 1);
    EXPECT_EQ(UsageStatus({"-i"}), 1);
    EXPECT_EQ(UsageStatus({"-l"}), 1);
    EXPECT_EQ(UsageStatus({"-h"}), 1);
}

TEST_F(EmptyFolder, ReportsMissingLensesFirst) {
    const Parsed parsed = Parse({"-l"}, false);
    EXPECT_EQ(parsed.status, 12);
    EXPECT_EQ(parsed.output, kNoLenses);
}

TEST_F(EmptyFolder, NeedsNoLensesWithoutTheLensFix) {
    MakeFile("a.RAW");
    EXPECT_EQ(Parse({}, false).status, 0);
}

}  // namespace
