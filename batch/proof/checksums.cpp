// SPDX-License-Identifier: MIT
#include "batch/proof/checksums.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "system/file_state.h"
#include "system/file_system.h"
#include "system/input_file.h"
#include "system/replacement_file.h"

namespace {

constexpr const char* kFileName = "SHA256SUMS";
constexpr std::size_t kSumDigits = 64;
constexpr std::string_view kBlanks = " \t";

/// Before a line whose name is written with escapes.
constexpr char kEscape = '\\';

/// The characters that would break a line, or be taken for an escape, and what stands for them.
constexpr std::array<std::pair<char, char>, 3> kEscapes = {{{'\\', '\\'}, {'\n', 'n'}, {'\r', 'r'}}};

std::string Escaped(std::string_view name) {
    std::string text;
    for (const char character : name) {
        const auto* const escape = std::ranges::find(kEscapes, character, &std::pair<char, char>::first);
        if (escape == kEscapes.end()) {
            text += character;
        } else {
            text += {kEscape, escape->second};
        }
    }
    return text;
}

/// The name that `text` was escaped from; nothing when no name could have been.
std::optional<std::string> Unescaped(std::string_view text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != kEscape) {
            name += text[i];
            continue;
        }
        const auto* const escape = ++i < text.size()
                                       ? std::ranges::find(kEscapes, text[i], &std::pair<char, char>::second)
                                       : kEscapes.end();
        if (escape == kEscapes.end()) {
            return std::nullopt;
        }
        name += escape->first;
    }
    return name;
}

void SkipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

/// Removes `start` from the start of `text`. Returns whether it stood there.
bool Skip(std::string_view& text, std::string_view start) {
    const bool there = text.starts_with(start);
    text.remove_prefix(there ? start.size() : 0);
    return there;
}

/// `text` as a check sum in small letters; nothing when it is none.
std::optional<std::string> SumOf(std::string_view text) {
    std::string sum(text);
    for (char& digit : sum) {
        digit = 'A' <= digit && digit <= 'F' ? static_cast<char>(digit - 'A' + 'a') : digit;
    }
    if (sum.size() != kSumDigits || sum.find_first_not_of("0123456789abcdef") != std::string::npos) {
        return std::nullopt;
    }
    return sum;
}

/// One line, its name still escaped if the line says so.
struct Line {
    std::string_view name;
    std::string_view sum;
};

/// "<sum>  <name>", or with a star for the second blank.
std::optional<Line> SplitPlain(std::string_view text) {
    if (text.size() <= kSumDigits) {
        return std::nullopt;
    }
    const auto sum = text.substr(0, kSumDigits);
    text.remove_prefix(kSumDigits);
    if ((!Skip(text, "  ") && !Skip(text, " *")) || text.empty()) {
        return std::nullopt;
    }
    return Line{text, sum};
}

/// What follows "SHA256": " (<name>) = <sum>", of whose blanks each may be missing.
std::optional<Line> SplitTagged(std::string_view text) {
    (void)Skip(text, " ");
    const auto end = text.rfind(')');
    if (!Skip(text, "(") || end == std::string_view::npos) {
        return std::nullopt;
    }
    const auto name = text.substr(0, text.rfind(')'));
    text.remove_prefix(name.size() + 1);
    SkipBlanks(text);
    if (!Skip(text, "=")) {
        return std::nullopt;
    }
    SkipBlanks(text);
    return Line{name, text};
}

void TakeLine(std::string_view text, Checksums& sums) {
    if (text.starts_with('#')) {
        return;
    }
    if (text.ends_with('\r')) {
        text.remove_suffix(1);
    }
    SkipBlanks(text);
    const bool escaped = Skip(text, std::string_view(&kEscape, 1));
    const auto line = Skip(text, "SHA256") ? SplitTagged(text) : SplitPlain(text);
    if (!line) {
        return;
    }
    const auto name = escaped ? Unescaped(line->name) : std::string(line->name);
    const auto sum = SumOf(line->sum);
    if (name && sum) {
        sums.insert_or_assign(*name, *sum);
    }
}

/// Returns 0, also when there is no file, or the system's error number.
int ReadText(const std::string& path, std::string& text) {
    constexpr std::uint64_t longest = 64ULL * 1024 * 1024;  // a folder of 200000 pictures needs a third of it
    std::error_code error;
    if (!StateOf(path, error)) {
        return error == std::errc::no_such_file_or_directory ? 0 : error.value();
    }
    InputFile file;
    if (!file.Open(path)) {
        return file.error() ? file.error().value() : EIO;
    }
    if (file.size() > longest) {
        return EFBIG;
    }
    text.resize(static_cast<std::size_t>(file.size()));
    return file.ReadStart({reinterpret_cast<std::uint8_t*>(text.data()), text.size()}) ? 0 : EIO;
}

}  // namespace

int ReadChecksums(const std::string& folder, Checksums& sums) {
    sums.clear();
    std::string text;
    if (const int error = ReadText(folder + kFileName, text); error != 0) {
        return error;
    }
    for (std::string_view rest = text; !rest.empty();) {
        const auto end = std::min(rest.find('\n'), rest.size());
        TakeLine(rest.substr(0, end), sums);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return 0;
}

int WriteChecksums(const std::string& folder, const Checksums& sums) {
    std::string text;
    for (const auto& [name, sum] : sums) {
        const std::string escaped = Escaped(name);
        if (escaped != name) {
            text += kEscape;
        }
        text += sum;
        text += "  ";
        text += escaped;
        text += '\n';
    }
    ReplacementFile file;
    if (const std::error_code error = file.Open(folder + kFileName, ReplacementFile::Existing::kReplace)) {
        return error.value();
    }
    file.Write(text);
    return file.Commit(text.size()).value();
}
