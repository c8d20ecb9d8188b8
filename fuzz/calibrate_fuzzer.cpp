// SPDX-License-Identifier: MIT
// Merging a camera's new values into the text of sensdb.ini.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "calibrate/database_text.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/require.h"

namespace {

constexpr int kSerial = 3106091;

/// The lines of `text` that do not contain Line or LevelCorrection.
std::vector<std::string> OtherLines(const std::string& text) {
    std::vector<std::string> lines;
    std::string line;
    for (const char character : text) {
        if (character != '\n' && character != '\r') {
            line += character;
            continue;
        }
        if (!line.empty() && line.find("Line") == std::string::npos &&
            line.find("LevelCorrection") == std::string::npos) {
            lines.push_back(line);
        }
        line.clear();
    }
    return lines;
}

bool AreAllIn(const std::vector<std::string>& lines, const std::vector<std::string>& others) {
    auto from = others.begin();
    return std::ranges::all_of(lines, [&](const std::string& line) {
        from = std::find(from, others.end(), line);
        return from != others.end() && from++ != others.end();
    });
}

}  // namespace

void FuzzInput(std::span<const std::uint8_t> bytes) {
    const std::string before(bytes.begin(), bytes.end());
    const std::vector<float> levels = {0.5F, 0, 3};
    const std::vector<ListedRows> found = {{7, 0, 2646}, {8, 100, 2000}, {3967, 1500, 2646}};
    std::string text = before;
    if (!database_text::Merge(text, kSerial, found, levels).empty()) {
        Require(text == before, "a text that cannot be added to is left alone");
        return;
    }
    Require(AreAllIn(OtherLines(before), OtherLines(text + "\n")), "all other lines stay, in their order");
    const auto values = database_text::Read(text, kSerial);
    Require(values.levels == levels, "the levels are read back");
    Require(values.lines.size() % 4 == 0, "groups of four");
    for (const ListedRows& run : found) {
        const auto listed = database_text::ListedIn(values.lines);
        Require(
            std::ranges::any_of(listed, [&](const ListedRows& group) { return group.column == run.column; }),
            "every column that was found is listed");
    }
    std::string again = text;
    Require(database_text::Merge(again, kSerial, found, levels).empty() && again == text,
            "merging again changes nothing");
}
