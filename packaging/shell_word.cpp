// SPDX-License-Identifier: MIT
#include "packaging/shell_word.h"

#include <algorithm>

#include "base/control_character.h"

namespace {

/// Bytes from 0x80 on, letters of other languages, need no quotes either.
bool NeedsNoQuotes(char c) {
    constexpr std::string_view plain = "+,-./:=@_%";
    const bool is_digit = c >= '0' && c <= '9';
    const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return is_digit || is_letter || plain.find(c) != std::string_view::npos ||
           static_cast<unsigned char>(c) > 0x7F;
}

}  // namespace

std::string ShellWord(std::string_view text) {
    if (!text.empty() && std::ranges::all_of(text, NeedsNoQuotes)) {
        return std::string(text);
    }
    std::string word = "'";
    for (const char c : text) {
        if (c == '\'') {
            word += "'\\''";
        } else {
            word += IsControl(c) ? '?' : c;
        }
    }
    return word + "'";
}

std::string ShellWords(std::string_view first, std::size_t number) {
    return ShellWord(first) + (number > 1 ? " and " + std::to_string(number - 1) + " more" : "");
}
