// SPDX-License-Identifier: MIT
#include "batch/shown.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "base/control_character.h"
#include "system/system_error.h"

namespace {

/// A character as it stands in $'...'.
std::string Escaped(char c) {
    if (c == '\n') {
        return "\\n";
    }
    if (c == '\t') {
        return "\\t";
    }
    if (c == '\r') {
        return "\\r";
    }
    if (c == '\'' || c == '\\') {
        return std::string("\\") + c;
    }
    if (!IsControl(c)) {
        return {c};
    }
    std::array<char, 5> octal = {};
    (void)std::snprintf(octal.data(), octal.size(), "\\%03o",
                        static_cast<unsigned int>(static_cast<unsigned char>(c)));
    return octal.data();
}

std::string WithUnit(double number, const char* unit) {
    std::array<char, 40> text = {};
    (void)std::snprintf(text.data(), text.size(), "%.1f %s", number, unit);
    return text.data();
}

}  // namespace

std::string Shown(const std::string& text) {
    if (std::ranges::none_of(text, IsControl)) {
        return text;
    }
    std::string quoted = "$'";
    for (const char c : text) {
        quoted += Escaped(c);
    }
    return quoted + "'";
}

std::string ErrorText(std::error_code error) {
    return system_error::Text({error.default_error_condition().value(), std::generic_category()});
}

std::string NumberOfPictures(std::size_t number) {
    return std::to_string(number) + (number == 1 ? " picture" : " pictures");
}

std::string Bytes(std::uint64_t bytes) {
    constexpr std::uint64_t million = 1'000'000;
    constexpr std::uint64_t thousand_million = 1'000'000'000;
    if (bytes < thousand_million) {
        return std::to_string((bytes + million - 1) / million) + " MB";
    }
    return WithUnit(static_cast<double>(bytes) / static_cast<double>(thousand_million), "GB");
}

std::string Duration(double seconds) {
    constexpr double minute = 60;
    constexpr std::int64_t minutes_an_hour = 60;
    constexpr double two_minutes = 120;
    constexpr double longest = 1e9;
    const double known = std::clamp(seconds, 0.0, longest);
    if (known < minute) {
        return known < 10 ? WithUnit(known, "s") : std::to_string(std::lround(known)) + " s";
    }
    const std::int64_t minutes = std::lround(known / minute);
    if (known < two_minutes || minutes < minutes_an_hour) {
        return std::to_string(minutes) + " min";
    }
    return std::to_string(minutes / minutes_an_hour) + " h " + std::to_string(minutes % minutes_an_hour) +
           " min";
}
