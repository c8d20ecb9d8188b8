// SPDX-License-Identifier: MIT
#include "calibrate/database_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "calibrate/number_text.h"
#include "sensor/sensdb.h"
#include "sensor/sensor_frame.h"
#include "system/ini_file.h"

namespace database_text {

namespace {

constexpr std::string_view kLine = "Line";
constexpr std::string_view kLevel = "LevelCorrection";
constexpr std::size_t kGroup = sensdb::Sensdbtype::kLineGroup;

enum class Kind { kOther, kHeader, kLineValue, kLevelValue };

/// A line of the file, including its line end.
struct TextLine {
    std::string_view text;
    Kind kind = Kind::kOther;
    bool of_camera = false;  ///< whether it is in a section of the camera
    long long value = 0;
};

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The number at the start of the text, parsed as velmarcon does.
long long Number(std::string_view text) {
    constexpr int decimal = 10;
    return std::strtoll(std::string(text).c_str(), nullptr, decimal);
}

/// The end of the line that begins at `begin`, after its line end, by the rules of the INI library.
std::size_t LineEnd(std::string_view text, std::size_t begin) {
    const std::size_t end = text.find_first_of("\r\n", begin);
    if (end == std::string_view::npos) {
        return text.size();
    }
    return text.substr(end).starts_with("\r\n") ? end + 2 : end + 1;
}

std::vector<TextLine> LinesOf(std::string_view text, int serial) {
    std::vector<TextLine> lines;
    bool of_camera = false;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = LineEnd(text, begin);
        TextLine line = {.text = text.substr(begin, end - begin)};
        const std::string_view content = Trimmed(line.text);
        const std::size_t equals = content.find('=');
        if (content.starts_with('[') && content.find(']') != std::string_view::npos) {
            line.kind = Kind::kHeader;
            of_camera = static_cast<int>(Number(content.substr(1))) == serial;
        } else if (equals != std::string_view::npos) {
            // No key of a comment is one of these: it begins with ';' or '#'.
            const std::string_view key = Trimmed(content.substr(0, equals));
            if (key == kLine) {
                line.kind = Kind::kLineValue;
                line.value = Number(Trimmed(content.substr(equals + 1)));
            } else if (key == kLevel) {
                line.kind = Kind::kLevelValue;
            }
        }
        line.of_camera = of_camera;
        lines.push_back(line);
        begin = end;
    }
    return lines;
}

/// The first line end in the text. A carriage return alone counts only if all lines end so: before a line
/// feed, which may be an empty line of its own, it would be taken for one end with it.
std::string_view LineEndOf(std::string_view text) {
    const std::size_t end = text.find_first_of("\r\n");
    if (end == std::string_view::npos || text[end] == '\n') {
        return "\n";
    }
    if (text.substr(end).starts_with("\r\n")) {
        return "\r\n";
    }
    return text.find('\n') == std::string_view::npos ? "\r" : "\n";
}

void AppendGroup(std::vector<std::uint16_t>& lines, int column, int first_row, int end_row) {
    for (const int value : {column, first_row, column, end_row}) {
        lines.push_back(static_cast<std::uint16_t>(value));
    }
}

/// Appends the groups of a run. The camera's own DNGs lack the first rows, and a group that begins in these
/// rows has no effect on them. A run that begins there and goes on below gets two groups.
void AppendRun(std::vector<std::uint16_t>& lines, const ListedRows& run) {
    constexpr int split = sensor_frame::kCroppedDefectRow;
    if (run.first_row < split && run.end_row > split) {
        AppendGroup(lines, run.column, run.first_row, split);
        AppendGroup(lines, run.column, split, run.end_row);
    } else {
        AppendGroup(lines, run.column, run.first_row, run.end_row);
    }
}

/// Appends groups that repeat the repair of runs in adjacent columns, or in columns with one column between
/// them. Such runs are repaired from each other, and when the first is repaired the second is still
/// defective; every repetition leaves at most a quarter of the error.
void AppendRepetitions(std::vector<std::uint16_t>& lines, std::span<const ListedRows> runs) {
    constexpr int near = 2;         // columns
    constexpr int repetitions = 6;  // leaves an error of a few raw units for a saturated column
    for (int i = 0; i < repetitions; ++i) {
        for (const ListedRows& run : runs) {
            for (const ListedRows& other : runs) {
                const ListedRows both = {.column = run.column,
                                         .first_row = std::max(run.first_row, other.first_row - 1),
                                         .end_row = std::min(run.end_row, other.end_row + 1)};
                const int distance = std::abs(run.column - other.column);
                if (distance > 0 && distance <= near && both.first_row < both.end_row) {
                    AppendRun(lines, both);
                }
            }
        }
    }
}

/// Whether `outer` covers `inner`, give or take a few rows.
bool Covers(const ListedRows& outer, const ListedRows& inner) {
    constexpr int tolerance = 24;
    return outer.column == inner.column && outer.first_row - tolerance <= inner.first_row &&
           inner.end_row <= outer.end_row + tolerance && inner.first_row < outer.end_row &&
           outer.first_row < inner.end_row;
}

/// What to do with the camera's existing groups.
struct Plan {
    std::vector<bool> keep_group;
    std::vector<std::uint16_t> added;  // Line values
    std::vector<std::uint16_t> all;    // the added values, then the kept ones
};

Plan MakePlan(const std::vector<std::uint16_t>& own, std::vector<ListedRows> found) {
    Plan plan;
    const std::vector<ListedRows> groups = ListedIn(own);
    for (const ListedRows& group : groups) {
        const auto covering =
            std::ranges::find_if(found, [&](const ListedRows& run) { return Covers(run, group); });
        plan.keep_group.push_back(covering == found.end());
        if (covering != found.end()) {
            covering->first_row = std::min(covering->first_row, group.first_row);
            covering->end_row = std::max(covering->end_row, group.end_row);
        }
    }
    std::vector<ListedRows> added;
    for (const ListedRows& run : found) {
        bool listed = false;
        for (std::size_t group = 0; group < groups.size(); ++group) {
            listed =
                listed || (plan.keep_group[group] && groups[group].column == run.column &&
                           groups[group].first_row <= run.first_row && run.end_row <= groups[group].end_row);
        }
        if (!listed) {
            added.push_back(run);
        }
    }
    plan.added = LinesOfRuns(added);
    plan.all = plan.added;
    for (std::size_t group = 0; group < plan.keep_group.size(); ++group) {
        if (plan.keep_group[group]) {
            const auto first = own.begin() + static_cast<std::ptrdiff_t>(group * kGroup);
            plan.all.insert(plan.all.end(), first, first + kGroup);
        }
    }
    return plan;
}

std::string LineTexts(const std::vector<std::uint16_t>& values, std::string_view end) {
    std::string text;
    for (const std::uint16_t value : values) {
        text.append(kLine).append(" = ").append(std::to_string(value)).append(end);
    }
    return text;
}

/// The levels with six decimals, in the format of the INI library.
std::string LevelTexts(std::span<const float> levels, std::string_view end) {
    constexpr int decimals = 6;
    std::string text;
    for (const float level : levels) {
        text.append(kLevel).append(" = ").append(Fixed(level, decimals)).append(end);
    }
    return text;
}

/// Assembles the new text: the added groups go before the camera's existing ones, the levels where its old
/// levels were.
class Writer {
  public:
    Writer(const std::string& old, const std::vector<TextLine>& lines, std::string_view end)
        : end_(end), lines_(lines) {
        text_.reserve(old.size());
    }

    std::string Write(int serial, const Plan& plan, std::span<const float> levels);

  private:
    bool HasIn(Kind kind) const {
        return std::ranges::any_of(lines_,
                                   [&](const TextLine& line) { return line.of_camera && line.kind == kind; });
    }
    /// The last line of the camera's first section that is neither blank nor a comment; new lines go no
    /// further down.
    std::size_t LastOfSection() const;
    void EndLine() {
        if (!text_.empty() && text_.back() != '\n' && text_.back() != '\r') {
            text_ += end_;
        }
    }

    std::string_view end_;
    const std::vector<TextLine>& lines_;
    std::string text_;
};

std::size_t Writer::LastOfSection() const {
    std::size_t last = lines_.size();
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const bool starts_other = lines_[i].kind == Kind::kHeader && last != lines_.size();
        if (starts_other) {
            break;
        }
        const std::string_view content = Trimmed(lines_[i].text);
        const bool comment = content.starts_with(';') || content.starts_with('#');
        // Comments at the end may belong to the next section.
        if (lines_[i].of_camera && !content.empty() && !comment) {
            last = i;
        }
    }
    return last;
}

std::string Writer::Write(int serial, const Plan& plan, std::span<const float> levels) {
    std::string groups = LineTexts(plan.added, end_);
    std::string level_lines = LevelTexts(levels, end_);
    const auto put = [&](std::string& what) {
        if (!what.empty()) {
            EndLine();
            text_ += what;
            what.clear();
        }
    };
    const bool has_lines = HasIn(Kind::kLineValue);
    const bool has_levels = HasIn(Kind::kLevelValue);
    const std::size_t last = LastOfSection();
    std::size_t line_number = 0;
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        const TextLine& line = lines_[i];
        const bool own_line = line.of_camera && line.kind == Kind::kLineValue;
        const bool own_level = line.of_camera && line.kind == Kind::kLevelValue;
        if (own_line) {
            put(groups);
        }
        if (own_level) {
            put(level_lines);
        }
        const bool drop = own_level || (own_line && !plan.keep_group[line_number / kGroup]);
        line_number += own_line ? 1 : 0;
        if (!drop) {
            text_ += line.text;
        }
        if (line.of_camera && line.kind == Kind::kHeader && !has_lines) {
            put(groups);
        }
        if (i == last && !has_levels) {
            put(level_lines);
        }
    }
    if (last == lines_.size()) {
        EndLine();
        if (!text_.empty()) {
            text_ += end_;
        }
        text_ += "[" + std::to_string(serial) + "]";
        put(groups);
        put(level_lines);
    }
    return text_;
}

bool SameLevels(std::span<const float> read, std::span<const float> written) {
    constexpr float rounding = 0.00001F;
    return std::ranges::equal(read, written, [](float a, float b) { return std::abs(a - b) <= rounding; });
}

}  // namespace

Values Read(const std::string& text, int serial) {
    ini_file::File ini;
    ini.SetMultiKey(true);
    Values values;
    if (ini.LoadData(text) < 0) {
        return values;
    }
    ini_file::File::TNamesDepend sections;
    ini.GetAllSections(sections);
    for (const auto& section : sections) {
        ini_file::File::TNamesDepend keys;
        if (static_cast<int>(Number(section.pItem)) != serial || !ini.GetAllKeys(section.pItem, keys) ||
            keys.empty()) {
            continue;
        }
        values = {};  // of several sections with one number the last one counts
        for (const auto& key : keys) {
            ini_file::File::TNamesDepend items;
            ini.GetAllValues(section.pItem, key.pItem, items);
            for (const auto& item : items) {
                if (key.pItem == kLine) {
                    values.lines.push_back(static_cast<std::uint16_t>(Number(item.pItem)));
                } else if (key.pItem == kLevel) {
                    values.levels.push_back(std::strtof(item.pItem, nullptr));
                }
            }
        }
    }
    return values;
}

std::vector<ListedRows> ListedIn(std::span<const std::uint16_t> lines) {
    std::vector<ListedRows> rows;
    for (std::size_t i = 0; i + kGroup <= lines.size(); i += kGroup) {
        rows.push_back({.column = lines[i], .first_row = lines[i + 1], .end_row = lines[i + 3]});
    }
    return rows;
}

std::vector<std::uint16_t> LinesOfRuns(std::span<const ListedRows> runs) {
    std::vector<std::uint16_t> lines;
    for (const ListedRows& run : runs) {
        AppendRun(lines, run);
    }
    AppendRepetitions(lines, runs);
    return lines;
}

std::string Merge(std::string& text, int serial, std::vector<ListedRows> found,
                  std::span<const float> levels) {
    if (text.find('\0') != std::string::npos) {
        return "it is no text";
    }
    const std::vector<TextLine> lines = LinesOf(text, serial);
    std::vector<std::uint16_t> own;
    for (const TextLine& line : lines) {
        if (line.of_camera && line.kind == Kind::kLineValue) {
            own.push_back(static_cast<std::uint16_t>(line.value));
        }
    }
    if (own.size() % kGroup != 0) {
        return "the Line values of camera " + std::to_string(serial) + " do not come in fours";
    }
    const Plan plan = MakePlan(own, std::move(found));
    std::string merged = Writer(text, lines, LineEndOf(text)).Write(serial, plan, levels);
    if (merged.size() > ini_file::kLongestFile) {
        return "it would be longer than a database may be";
    }
    const Values read = Read(merged, serial);
    if (read.lines != plan.all || !SameLevels(read.levels, levels)) {
        return "its section of camera " + std::to_string(serial) +
               " is written in a way that cannot be added to";
    }
    text = std::move(merged);
    return "";
}

}  // namespace database_text
