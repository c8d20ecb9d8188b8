// SPDX-License-Identifier: MIT
#include "app/command_line.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/app/parsed_options.h"
#include "tests/app/working_folder.h"
#include "tests/support/files.h"

namespace {

using Texts = std::vector<std::string>;

/// The result of running the program's option parser on a command line, as one text.
std::string Outcome(const Texts& arguments) {
    const Parsed parsed = Parse(arguments);
    std::string outcome = std::to_string(parsed.status) + parsed.output + Changed(parsed.settings) + "<" +
                          parsed.settings.input.folder + ">" + parsed.settings.output_folder;
    for (const std::string& name : parsed.settings.input.names) {
        outcome += " " + name;
    }
    return outcome;
}

/// A command line that lives as long as the arguments parsed from it.
class ReadLine {
  public:
    explicit ReadLine(Texts arguments) : texts_(std::move(arguments)) {
        texts_.insert(texts_.begin(), "velmarcon");
        std::ranges::transform(texts_, std::back_inserter(argv_),
                               [](std::string& text) { return text.data(); });
        read_ = ReadCommandLine(argv_);
    }

    const std::vector<Argument>& Arguments() const { return read_; }

  private:
    Texts texts_;
    std::vector<char*> argv_;
    std::vector<Argument> read_;
};

Texts Written(const Argument& argument) {
    Texts texts = {std::string(argument.text)};
    if (argument.value) {
        texts.emplace_back(*argument.value);
    }
    return texts;
}

/// The current folder holds a.RAW, the folder "in" holds b.RAW, and "out" is empty.
class CommandLine : public testing::Test {
  protected:
    void SetUp() override {
        MakeFile("a.RAW");
        for (const char* name : {"in", "out"}) {
            std::filesystem::create_directory(name);
        }
        MakeFile("in/b.RAW");
    }

    /// Expects that the program does the same without the ignored arguments, and something else without any
    /// one of the others.
    void ExpectThatOnlyWhatCountsDoesAnything(const Texts& line) {
        const ReadLine read(line);
        Texts rest;
        for (const Argument& argument : read.Arguments()) {
            if (argument.counts) {
                const Texts alone = Written(argument);
                rest.insert(rest.end(), alone.begin(), alone.end());
                EXPECT_NE(OutcomeOf(alone), OutcomeOf({})) << testing::PrintToString(alone);
            }
        }
        EXPECT_EQ(OutcomeOf(rest), OutcomeOf(line)) << testing::PrintToString(line);
    }

  private:
    const std::string& OutcomeOf(const Texts& line) {
        const auto [known, is_new] = outcomes_.try_emplace(line);
        if (is_new) {
            known->second = Outcome(line);
        }
        return known->second;
    }

    const support::TempFolder folder_;
    const WorkingFolder working_{folder_.path()};
    std::map<Texts, std::string> outcomes_;
};

TEST_F(CommandLine, CountsTheArgumentsThatHaveAnEffectForAllLinesOfThree) {
    const Texts pool = {"-i", "in",  "-o",  "out", "-v", "-r", "-p",  "-b",      "100",  "-l", "000001",
                        "-s", "-sd", "-st", "-sb", "-c", "-x", "-vb", "--input", "-iin", "-",  ""};
    for (const std::string& first : pool) {
        for (const std::string& second : pool) {
            for (const std::string& third : pool) {
                ExpectThatOnlyWhatCountsDoesAnything({first, second, third});
            }
        }
    }
}

TEST_F(CommandLine, KnowsTheSameCharactersAfterTheDashAsTheProgram) {
    constexpr int characters = 256;
    for (int character = 1; character < characters; ++character) {
        const std::string argument = {'-', static_cast<char>(character)};
        ExpectThatOnlyWhatCountsDoesAnything({argument, "in"});
        ExpectThatOnlyWhatCountsDoesAnything({argument + "d", "in"});
        ExpectThatOnlyWhatCountsDoesAnything({"-s" + argument.substr(1), "in"});
    }
}

TEST_F(CommandLine, MatchesAnOptionByTheStartOfAnArgument) {
    for (const OptionSpelling& spelling : kOptionSpellings) {
        for (const std::string& argument : {std::string(spelling.text), std::string(spelling.text) + "~"}) {
            const ReadLine read({argument, "in"});
            ASSERT_NE(read.Arguments()[0].option, nullptr) << argument;
            EXPECT_EQ(read.Arguments()[0].option->option, spelling.option) << argument;
            EXPECT_EQ(read.Arguments()[0].value.has_value(), spelling.value != OptionValue::kNone);
        }
    }
}

TEST_F(CommandLine, FindsTheFirstOptionThatCounts) {
    const ReadLine read({"-l", "-i", "in", "-l", "000001", "-o"});
    const Argument* lens = FindOption(read.Arguments(), Option::kLensFix);
    ASSERT_NE(lens, nullptr);
    EXPECT_FALSE(lens->value);
    EXPECT_EQ(FindOption(read.Arguments(), Option::kInput)->value, "in");
    EXPECT_EQ(FindOption(read.Arguments(), Option::kOutput), nullptr);
    EXPECT_EQ(FindOption(read.Arguments(), Option::kVerbose), nullptr);
}

}  // namespace
