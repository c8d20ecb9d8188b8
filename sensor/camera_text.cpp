// SPDX-License-Identifier: MIT
#include "sensor/camera_text.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "sensor/database_names.h"

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view WithoutLeadingBlanks(std::string_view line) {
    return line.substr(std::min(line.find_first_not_of(kBlanks), line.size()));
}

/// Whether the library, too, treats `line`, which ends at a line feed, as one line: for the library, a lone
/// carriage return also ends a line, and the name of a section may continue in the next line.
bool IsPlain(std::string_view line) {
    const bool ends_early = line.find('\r') < line.size() - 1;
    return !ends_early && (!line.starts_with('[') || line.find(']') != std::string_view::npos);
}

bool IsLevel(std::string_view line) {
    if (!line.starts_with(database_names::kLevelKey)) {
        return false;
    }
    return WithoutLeadingBlanks(line.substr(std::string_view(database_names::kLevelKey).size()))
        .starts_with('=');
}

}  // namespace

std::string CameraText(const std::string& text, int serial) {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (text.starts_with(byte_order_mark) || text.find('\0') != std::string::npos) {
        return text;
    }
    std::string kept;
    bool is_camera = serial == database_names::SerialOf("");  // its keys come before the first section
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        const std::string_view whole(text.data() + begin, end - begin);
        const auto line =
            WithoutLeadingBlanks(whole.substr(0, whole.size() - (whole.ends_with('\n') ? 1 : 0)));
        if (!line.empty() && !IsPlain(line)) {
            return text;
        }
        if (line.starts_with('[')) {
            is_camera = database_names::SerialOf(line.data() + 1) == serial;
        }
        if (is_camera || !IsLevel(line)) {
            kept += whole;
        }
        begin = end;
    }
    return kept;
}
