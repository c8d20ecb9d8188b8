// SPDX-License-Identifier: MIT
#include "tests/end_to_end/exif_tool.h"

#include <algorithm>
#include <regex>
#include <sstream>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/support/program.h"

namespace end_to_end {

namespace {

std::vector<std::string> RunExifTool(std::vector<std::string> arguments, const std::string& path) {
    arguments.push_back(path);
    const support::Outcome outcome = support::RunProgram("exiftool", arguments, {.through_path = true});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    std::vector<std::string> lines;
    std::istringstream output(outcome.output);
    for (std::string line; std::getline(output, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// Of a rational both the quotient and, in parentheses, the fraction are printed.
std::string FractionOrValue(std::string_view type, const std::string& value) {
    if (!type.starts_with("rational")) {
        return value;
    }
    const auto open = value.find('(');
    return value.substr(open + 1, value.size() - open - 2);
}

/// Takes the lines of exiftool's most verbose output one after the other:
///
///     + [IFD0 directory with 47 entries]
///     | 0)  SubfileType = 0
///     |     - Tag 0x00fe (4 bytes, int32u[1]):
///     | 22) ExifOffset (SubDirectory) -->
///     |     - Tag 0x8769 (4 bytes, int32u[1]):
///     | + [ExifIFD directory with 21 entries]
///     | | 0)  ExposureTime = 0.004 (4000/1000000)
class VerboseOutput {
  public:
    void TakeLine(const std::string& line) {
        static const std::regex directory(R"(^[ |]*\+ \[(\w+) directory with \d+ entries\]$)");
        static const std::regex entry(R"(^([ |]*)\d+\) +\S+ (?:=|\(SubDirectory\)) ?(.*)$)");
        static const std::regex type(R"(^[ |]*- Tag 0x([0-9a-f]{4}) \(\d+ bytes, (\w+\[\d+\]).*$)");
        std::smatch match;
        if (std::regex_match(line, match, directory)) {
            open_.resize(Depth(line));
            open_.push_back(match[1]);
        } else if (std::regex_match(line, match, entry)) {
            open_.resize(Depth(line));
            value_ = match[2];
        } else if (std::regex_match(line, match, type)) {
            constexpr int hexadecimal = 16;
            AddTag(static_cast<std::uint16_t>(std::stoul(match[1], nullptr, hexadecimal)), match[2]);
        }
    }

    const std::map<std::string, TagTexts>& directories() const { return directories_; }

  private:
    /// How many directories enclose the line: each adds a bar in front of it.
    static std::size_t Depth(const std::string& line) {
        return static_cast<std::size_t>(
            std::ranges::count(line.substr(0, line.find_first_not_of(" |")), '|'));
    }

    void AddTag(std::uint16_t tag, const std::string& type) {
        TagTexts& tags = directories_[open_.back()];
        // TIFF 6.0, section 2: entries ascend; so none can be there twice, either.
        EXPECT_TRUE(tags.empty() || tags.rbegin()->first < tag) << open_.back() << ' ' << tag;
        const std::string value = FractionOrValue(type, value_);
        tags[tag] = value.empty() ? type : type + " " + value;
    }

    std::vector<std::string> open_;  ///< the directory of the line and those around it, outermost first
    std::string value_;              ///< of the entry whose type comes next
    std::map<std::string, TagTexts> directories_;
};

}  // namespace

std::map<std::string, TagTexts> ReadTags(const std::string& path) {
    VerboseOutput output;
    for (const std::string& line : RunExifTool({"-v5"}, path)) {
        output.TakeLine(line);
    }
    return output.directories();
}

std::vector<std::string> Complaints(const std::string& path) {
    constexpr std::string_view minor = "[minor] ";
    std::vector<std::string> lines = RunExifTool({"-warning", "-error", "-validate", "-a", "-s3"}, path);
    // The result of the validation itself only counts the other lines.
    std::erase_if(lines,
                  [](std::string_view line) { return line.find(" Warnings (") != std::string_view::npos; });
    for (std::string& line : lines) {
        line.erase(0, line.starts_with(minor) ? minor.size() : 0);
    }
    std::ranges::sort(lines);
    return lines;
}

}  // namespace end_to_end
