// SPDX-License-Identifier: MIT
#include "tests/end_to_end/exif_tool.h"

#include <algorithm>
#include <cstddef>
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

/// exiftool prints a rational as its quotient, followed by the fraction in parentheses.
std::string FractionOrValue(std::string_view type, const std::string& value) {
    if (!type.starts_with("rational")) {
        return value;
    }
    const auto open = value.find('(');
    return value.substr(open + 1, value.size() - open - 2);
}

/// The part of `text` between the first `before` and the next `after`.
std::string_view Between(std::string_view text, std::string_view before, std::string_view after) {
    const auto start = text.find(before) + before.size();
    return text.substr(start, text.find(after, start) - start);
}

/// Whether `text` starts with a number and a parenthesis.
bool IsEntry(std::string_view text) {
    const auto end = text.find_first_not_of("0123456789");
    return end != 0 && end != std::string_view::npos && text[end] == ')';
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
///
/// Each directory adds a bar in front of its lines.
class VerboseOutput {
  public:
    void TakeLine(std::string_view line) {
        constexpr std::string_view directory = "+ [";
        constexpr std::string_view type = "- Tag 0x";
        const std::string_view text = line.substr(std::min(line.find_first_not_of(" |"), line.size()));
        const auto depth = static_cast<std::size_t>(
            std::count(line.begin(), line.end() - static_cast<std::ptrdiff_t>(text.size()), '|'));
        if (text.starts_with(directory)) {
            open_.resize(depth);
            open_.emplace_back(Between(text, directory, " directory"));
        } else if (text.starts_with(type)) {
            constexpr int hexadecimal = 16;
            const std::string tag(Between(text, type, " "));
            AddTag(static_cast<std::uint16_t>(std::stoul(tag, nullptr, hexadecimal)),
                   std::string(Between(text, " bytes, ", "]")) + "]");
        } else if (IsEntry(text)) {
            open_.resize(depth);
            value_ = text.ends_with("-->") ? "-->" : text.substr(text.find(" = ") + 3);
        }
    }

    const std::map<std::string, TagTexts>& directories() const { return directories_; }

  private:
    void AddTag(std::uint16_t tag, const std::string& type) {
        TagTexts& tags = directories_[open_.back()];
        // TIFF 6.0, section 2: entries ascend, so no tag can be there twice.
        EXPECT_TRUE(tags.empty() || tags.rbegin()->first < tag) << open_.back() << ' ' << tag;
        const std::string value = FractionOrValue(type, value_);
        tags[tag] = value.empty() ? type : type + " " + value;
    }

    std::vector<std::string> open_;  ///< the IFD of the current line and those around it, outermost first
    std::string value_;              ///< of the entry whose type comes next
    std::map<std::string, TagTexts> directories_;
};

void ExpectDirectory(const TagTexts& read, const TagTexts& expected, const std::string& directory) {
    for (const auto& [tag, text] : expected) {
        const auto found = read.find(tag);
        EXPECT_EQ(found == read.end() ? "no such tag" : found->second, text) << directory << ' ' << tag;
    }
    for (const auto& [tag, text] : read) {
        EXPECT_TRUE(expected.contains(tag)) << directory << ' ' << tag << ' ' << text;
    }
}

}  // namespace

void Merge(TagTexts& into, const TagTexts& tags) {
    for (const auto& [tag, text] : tags) {
        into[tag] = text;
    }
}

void ExpectTags(const TagsOfFile& read, const TagsOfFile& expected) {
    EXPECT_EQ(read.size(), expected.size());
    for (const auto& [directory, tags] : expected) {
        ASSERT_TRUE(read.contains(directory)) << directory;
        ExpectDirectory(read.at(directory), tags, directory);
    }
}

TagsOfFile ReadTags(const std::string& path) {
    VerboseOutput output;
    for (const std::string& line : RunExifTool({"-v5"}, path)) {
        output.TakeLine(line);
    }
    return output.directories();
}

std::string PrintedTag(const std::string& path, const std::string& name) {
    const std::vector<std::string> lines = RunExifTool({"-s3", "-" + name}, path);
    EXPECT_EQ(lines.size(), 1U) << name;
    return lines.empty() ? "" : lines.front();
}

std::vector<std::string> Complaints(const std::string& path) {
    constexpr std::string_view minor = "[minor] ";
    std::vector<std::string> lines = RunExifTool({"-warning", "-error", "-validate", "-a", "-s3"}, path);
    // The result line of the validation only counts the other lines.
    std::erase_if(lines,
                  [](std::string_view line) { return line.find(" Warnings (") != std::string_view::npos; });
    for (std::string& line : lines) {
        line.erase(0, line.starts_with(minor) ? minor.size() : 0);
    }
    std::ranges::sort(lines);
    return lines;
}

}  // namespace end_to_end
