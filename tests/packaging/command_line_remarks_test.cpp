// SPDX-License-Identifier: MIT
#include "packaging/command_line_remarks.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/app/parsed_options.h"
#include "tests/app/working_folder.h"
#include "tests/support/files.h"

namespace {

using Texts = std::vector<std::string>;

/// The remarks on a command line, the one on its lens code last.
Texts Remarks(Texts line, const lensdb& lenses) {
    line.insert(line.begin(), "velmarcon");
    std::vector<char*> argv;
    std::ranges::transform(line, std::back_inserter(argv), [](std::string& text) { return text.data(); });
    const std::vector<Argument> read = ReadCommandLine(argv);
    Texts remarks = RemarksOn(read);
    if (const Argument* code = LensCodeIn(read); code != nullptr) {
        const std::string remark = RemarkOnLensCode(*code, read, lenses);
        remarks.insert(remarks.end(), remark.empty() ? 0 : 1, remark);
    }
    return remarks;
}

lensdb OneLens() {
    lensdb lenses("data/");
    lenses.Lenses["000001"] = {};
    return lenses;
}

struct RemarkCase {
    const char* name;
    Texts line;
    Texts remarks;

    friend void PrintTo(const RemarkCase& test, std::ostream* out) { *out << test.name; }
};

/// The current folder holds a.RAW, the folder "card" L1.RAW and L2.RAW, and "dng" nothing.
class RemarksOnCommandLine : public testing::TestWithParam<RemarkCase> {
  protected:
    void SetUp() override {
        MakeFile("a.RAW");
        for (const char* name : {"card", "dng", "-odd", "My card", "two words"}) {
            std::filesystem::create_directory(name);
        }
        MakeFile("card/L1.RAW");
        MakeFile("card/L2.RAW");
    }

    const support::TempFolder folder_;
    const WorkingFolder working_{folder_.path()};
};

TEST_P(RemarksOnCommandLine, SayWhatIsPassedOver) {
    EXPECT_EQ(Remarks(GetParam().line, OneLens()), GetParam().remarks);
}

const std::vector<RemarkCase> kRemarkCases = {
    {"NoneOnNoArguments", {}, {}},
    {"NoneOnAllOptions",
     {"-i", "card", "-o", "dng", "-v", "-r", "-p", "-b", "100", "-l", "000001", "-s", "-st", "-sb", "-c"},
     {}},
    {"NoneWithoutTheOptionalValues", {"-b", "-l", "-v"}, {}},
    {"NoneOnPathsThatBeginWithADash", {"-i", "-odd", "-o", "-odd"}, {}},
    {"NoneOnOptionsInOneWord", {"-verbose", "-input", "card/L1", "-sdark", "-output", "dng"}, {}},
    {"NoneOnRepeatedOptions", {"-v", "-v", "-s", "-sb", "-b", "-b", "-l", "-l", "-i", "card", "-i"}, {}},
    {"NoneOnTheSameValueAgain", {"-i", "card", "-i", "card", "-b", "7", "-b", "7"}, {}},
    {"NoneOnADarkExposure", {"-i", "card/L1", "-sd", "-r"}, {}},
    {"NoneOnZerosBeforeALevel", {"-b", "0092"}, {}},

    {"AWordWithoutInput",
     {"card"},
     {"card: ignored: without -i the input is the current folder; write -i card"}},
    {"APictureWithoutItsExtension",
     {"card/L1", "-b"},
     {"card/L1: ignored: without -i the input is the current folder; write -i card/L1"}},
    {"AWordThatIsNoFile",
     {"-v", "3"},
     {"3: ignored: without -i the input is the current folder; write -i before the input"}},
    {"AWordWithABlank",
     {"My card"},
     {"'My card': ignored: without -i the input is the current folder; write -i 'My card'"}},
    {"AnEmptyWord",
     {""},
     {"'': ignored: without -i the input is the current folder; write -i before the input"}},
    {"ADash", {"-"}, {"-: ignored: without -i the input is the current folder; write -i before the input"}},
    {"AllFilesOfAFolder",
     {"card/L1.RAW", "card/L2.RAW"},
     {"card/L1.RAW and 1 more: ignored: without -i the input is the current folder; write -i card"}},
    {"AllFilesOfAFolderAfterTheOption",
     {"-i", "card/L1.RAW", "card/L2.RAW", "card/L3.RAW"},
     {"card/L2.RAW and 1 more: ignored: -i takes one path, here card/L1.RAW; for the whole folder write "
      "-i card"}},
    {"AllFilesOfTheCurrentFolder",
     {"-i", "a.RAW", "b.RAW"},
     {"b.RAW: ignored: -i takes one path, here a.RAW; for the whole folder write -i ."}},
    {"AnOutputFolderWithoutItsOption",
     {"-i", "card", "dng"},
     {"dng: ignored: -i takes one path, here card; for an output folder write -o dng"}},
    {"AFolderWithABlank",
     {"-i", "card", "-o", "My", "Pictures"},
     {"Pictures: ignored: -i takes one path, here card; a name with a blank needs quotes: -o 'My "
      "Pictures'",
      "My: there is no such folder"}},
    {"AFolderWithSeveralBlanks",
     {"-i", "card", "-o", "My", "own", "new", "Pictures"},
     {"own and 2 more: ignored: -i takes one path, here card; a name with a blank needs quotes: -o 'My own "
      "new Pictures'",
      "My: there is no such folder"}},
    {"AFolderWithABlankAndAWordAfterIt",
     {"-i", "card", "-o", "two", "words", "dng"},
     {"words and 1 more: ignored: -i takes one path, here card; a name with a blank needs quotes: -o 'two "
      "words'",
      "two: there is no such folder"}},
    {"FilesOfSeveralFolders",
     {"-i", "card/L1.RAW", "dng/L2.RAW"},
     {"dng/L2.RAW: ignored: -i takes one path, here card/L1.RAW"}},

    {"Help", {"-h"}, {"-h: ignored: there is no such option; for help write velmarcon --help"}},
    {"HelpAfterOthers",
     {"-v", "--help"},
     {"--help: ignored: it counts only as the first word after velmarcon"}},
    {"ALongForm",
     {"--input", "card"},
     {"--input: ignored: there is no such option; write -i",
      "card: ignored: without -i the input is the current folder; write -i card"}},
    {"ALongFormWithItsValue",
     {"--output=My dng"},
     {"'--output=My dng': ignored: there is no such option; write -o 'My dng'"}},
    {"ACapitalLetter", {"-V"}, {"-V: ignored: there is no such option; write -v"}},
    {"OptionsOfVelmarconBatch",
     {"--verify", "--json=my file", "-j"},
     {"--verify: ignored: there is no such option; velmarcon-batch has it",
      "'--json=my file': ignored: there is no such option; velmarcon-batch has it",
      "-j: ignored: there is no such option; velmarcon-batch has it"}},
    {"AnotherFormOfAnOptionOfVelmarconBatch",
     {"--verify-all", "--Verify"},
     {"--verify-all: ignored: there is no such option", "--Verify: ignored: there is no such option"}},
    {"Unknown",
     {"-x", "--", "-5", "--="},
     {"-x: ignored: there is no such option", "--: ignored: there is no such option",
      "-5: ignored: there is no such option", "--=: ignored: there is no such option"}},

    {"GluedOptions", {"-vb"}, {"-vb: read as -v, the rest is ignored; write -v -b"}},
    {"GluedToASensorOption", {"-stv"}, {"-stv: read as -st, the rest is ignored; write -st -v"}},
    {"GluedSensorOptions", {"-stb"}, {"-stb: read as -st, the rest is ignored"}},
    {"AnotherWord", {"-raw"}, {"-raw: read as -r, the rest is ignored"}},
    {"AGluedPath",
     {"-icard", "-i../card", "card"},
     {"-icard: read as -i, the rest is ignored; write -i card"}},
    {"AGluedPathThatTakesTheOutputOption",
     {"-i../card", "-o", "../dng"},
     {"-i../card: read as -i, the rest is ignored; write -i ../card"}},
    {"OptionsGluedByAHyphen", {"-s-r"}, {"-s-r: read as -s, the rest is ignored; write -s -r"}},
    {"SensorOptionsGluedByAHyphen", {"-s-b"}, {"-s-b: read as -s, the rest is ignored; write -s -b"}},
    {"AGluedPathThatTakesTheNextOption",
     {"-i../card", "-v"},
     {"-i../card: read as -i, the rest is ignored; write -i ../card"}},
    {"AGluedPathAtTheEnd", {"-o=dng"}, {"-o=dng: ignored: no path comes after it; write -o dng"}},
    {"AGluedLevel", {"-b100"}, {"-b100: read as -b, the rest is ignored; write -b 100"}},
    {"AGluedCode", {"-l000001"}, {"-l000001: read as -l, the rest is ignored; write -l 000001"}},
    {"AGluedValueOfAnOptionWithoutOne", {"-v3"}, {"-v3: read as -v, the rest is ignored"}},

    {"NoPath", {"-v", "-i"}, {"-i: ignored: no path comes after it"}},
    {"NoOutputPath",
     {"-i", "card", "-o"},
     {"-o: ignored: no path comes after it; the DNGs go next to the input"}},
    {"ASecondPath", {"-i", "card", "-i", "dng"}, {"-i dng: ignored: only the first -i counts"}},
    {"ASecondCode", {"-l", "-l", "000001"}, {"-l 000001: ignored: only the first -l counts"}},

    {"ALevelThatIsAPath",
     {"-b", "card"},
     {"-b card: read as black level 0; it must be a whole number from 0 to 65535; to convert it write -i "
      "card"}},
    {"ADarkFrameAsALevel",
     {"-b", "card/L1.bia"},
     {"-b card/L1.bia: read as black level 0; it must be a whole number from 0 to 65535; write -b alone: a "
      "dark frame is found by its name"}},
    {"ASecondLevel", {"-b", "100", "200"}, {"200: ignored: -b takes one value, here 100"}},
    {"ANegativeLevel",
     {"-b", "-20"},
     {"-20: ignored: there is no such option; the black level is then 92, and cannot be negative"}},
    {"AnEnDash",
     {"\u2013b", "100"},
     {"\u2013b: ignored: it begins with a long dash; write -b with a plain hyphen"}},
    {"AnEmDashAndAMinus",
     {"\u2014i", "card", "\u2212v"},
     {"\u2014i: ignored: it begins with a long dash; write -i with a plain hyphen",
      "\u2212v: ignored: it begins with a long dash; write -v with a plain hyphen"}},
    {"ALevelThatIsTheOutputFolder",
     {"-i", "card", "-b", "dng"},
     {"-b dng: read as black level 0; it must be a whole number from 0 to 65535; for an output folder write "
      "-o dng"}},
    {"ALevelOf17Bits",
     {"-b", "70000"},
     {"-b 70000: read as black level 4464; it must be a whole number from 0 to 65535"}},
    {"ALevelWithAFraction",
     {"-b", "92.5"},
     {"-b 92.5: read as black level 92; it must be a whole number from 0 to 65535"}},
    {"AnEmptyLevel", {"-b", ""}, {"-b '': read as black level 0; it must be a whole number from 0 to 65535"}},

    {"ACodeThatNoLensHas",
     {"-l", "111110"},
     {"-l 111110: this code adds no lens data: no lens has it in data/lensdb.ini"}},
    {"ACodeOfFiveDigits",
     {"-l", "10001"},
     {"-l 10001: this code adds no lens data: it must have six digits, each 0 or 1"}},
    {"ACodeThatIsAPath",
     {"-l", "card"},
     {"-l card: this code adds no lens data: it must have six digits, each 0 or 1; to convert it write -i "
      "card"}},

    {"ACodeThatIsTheOutputFolder",
     {"-i", "card", "-l", "dng"},
     {"-l dng: this code adds no lens data: it must have six digits, each 0 or 1; for an output folder write "
      "-o dng"}},

    {"ADarkExposureInAFolder",
     {"-i", "card", "-sd"},
     {"-sd: takes one dark exposure, but the input is a folder; name the exposure, as in: velmarcon -i "
      "dark/L1000200 -sd -r"}},
};

INSTANTIATE_TEST_SUITE_P(Lines, RemarksOnCommandLine, testing::ValuesIn(kRemarkCases),
                         testing::PrintToStringParamName());

TEST(RemarkOnLensCode, IsLeftToTheProgramWithoutADatabase) {
    const support::TempFolder folder;
    const WorkingFolder working(folder.path());
    EXPECT_EQ(Remarks({"-i", ".", "-l", "111110"}, lensdb("data/")), Texts());
}

TEST(RemarkOnLensCode, IsNoneForAnyNameInTheDatabase) {
    const support::TempFolder folder;
    const WorkingFolder working(folder.path());
    lensdb lenses("data/");
    lenses.Lenses["my lens"] = {};
    EXPECT_EQ(Remarks({"-i", ".", "-l", "my lens"}, lenses), Texts());
}

/// What the program makes of a command line, without the folders.
std::string Outcome(const Texts& line) {
    const Parsed parsed = Parse(line);
    return std::to_string(parsed.status) + Changed(parsed.settings) + parsed.settings.input.folder;
}

TEST_F(RemarksOnCommandLine, AreTrueForEveryTwoCharactersAfterADash) {
    const std::string characters = "abcdefghijklmnopqrstuvwxyzBDILSTV019-=/.";
    for (const char first : characters) {
        for (const char second : characters) {
            const std::string argument = {'-', first, second};
            const Texts remarks = Remarks({argument, "card"}, OneLens());
            const auto about = std::ranges::find_if(remarks, [&](const std::string& remark) {
                return remark.starts_with(argument + ": read as ") ||
                       remark.starts_with(argument + ": ignored: ");
            });
            std::string does = argument;
            if (about != remarks.end() && about->find("there is no such option") != std::string::npos) {
                EXPECT_EQ(Outcome({argument, "card"}), Outcome({"card"})) << argument;
                continue;
            }
            if (about != remarks.end()) {
                const std::string read_as = argument + ": read as ";
                ASSERT_TRUE(about->starts_with(read_as)) << *about;
                does = about->substr(read_as.size(), about->find(',') - read_as.size());
            }
            EXPECT_EQ(Outcome({argument, "card"}), Outcome({does, "card"})) << argument;
            const bool is_spelling = std::ranges::any_of(
                kOptionSpellings, [&](const OptionSpelling& spelling) { return spelling.text == does; });
            EXPECT_TRUE(is_spelling) << argument << " has no remark";
        }
    }
}

/// What the program passes over in `line`, in which no option is repeated, makes this number of remarks.
std::ptrdiff_t RemarksDueOn(const std::vector<Argument>& line) {
    const auto words = std::ranges::count_if(line, [](const Argument& argument) {
        return argument.option == nullptr && (argument.text == "-" || !argument.text.starts_with('-'));
    });
    const auto passed_over =
        std::ranges::count_if(line, [](const Argument& argument) { return !argument.counts; });
    return passed_over - words + (words > 0 ? 1 : 0);
}

TEST_F(RemarksOnCommandLine, AreOneForEachOptionThatIsPassedOverAndOneForAllWords) {
    const Texts pool = {"-i", "card", "-o", "dng", "-v", "-b", "-l", "000001", "-s", "-x", "--input", "-"};
    for (const std::string& first : pool) {
        for (const std::string& second : pool) {
            for (const std::string& third : pool) {
                if (first == second || first == third || second == third) {
                    continue;
                }
                Texts line = {"velmarcon", first, second, third};
                std::vector<char*> argv;
                std::ranges::transform(line, std::back_inserter(argv),
                                       [](std::string& text) { return text.data(); });
                const std::vector<Argument> read = ReadCommandLine(argv);
                const auto said = std::ranges::count_if(RemarksOn(read), [](const std::string& remark) {
                    return remark.find(": ignored: ") != std::string::npos;
                });
                EXPECT_EQ(said, RemarksDueOn(read)) << testing::PrintToString(line);
            }
        }
    }
}

}  // namespace
