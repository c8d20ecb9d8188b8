// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/matrix/edits.h"
#include "tests/matrix/entry_cases.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace matrix {

namespace {

using samples::Entry;
using Entries = std::vector<Entry>;

struct OddText {
    const char* name;
    std::string text;
};

/// All bytes from `first` to `last`.
std::string ByteRange(int first, int last) {
    std::string text;
    for (int byte = first; byte <= last; ++byte) {
        text += static_cast<char>(byte);
    }
    return text;
}

const std::vector<OddText>& OddTexts() {
    constexpr std::size_t long_text = 65536;
    static const std::vector<OddText> texts = {
        {"one-letter", "x"},
        {"four-letters", "four"},
        {"printf", "%s%n%d%x%99999d%*.*f%"},
        {"high-bytes", ByteRange(128, 255)},
        {"control-bytes", ByteRange(1, 31) + "\x7F"},
        {"nul-inside", std::string("ab\0cd\0ef", 8)},
        {"nuls", std::string(300, '\0')},
        {"path", "../../../../../../tmp/x\\y:z"},
        {"long", std::string(long_text, 'L')},
        {"long-nuls", std::string(long_text, '\0')},
        {"digits", std::string(400, '9')},
        {"a-number", "-2147483649"},
    };
    return texts;
}

/// The camera's own text for a tag; a DNG is only repaired if its make and model are the camera's.
std::string CamerasOwn(std::uint16_t tag) {
    switch (tag) {
        case tag::kMake:
            return "Leica Camera AG";
        case tag::kModel:
            return "M8";
        default:
            return "";
    }
}

void AddOddText(CaseList& cases, const EditableDirectory& where, std::uint16_t tag, const OddText& odd) {
    // The texts are long and numerous, so each case makes its text only when it runs.
    const auto add = [&](const char* what, const auto& make) {
        AddEdit(cases, "texts", where, std::to_string(tag) + "/" + odd.name + what, Pixels::kKnown,
                [make, tag, &odd](Entries& entries) { samples::Set(entries, make(tag, odd.text)); });
    };
    using Text = std::string;
    add("", [](std::uint16_t of, const Text& text) { return samples::Ascii(of, text); });
    add("-without-nul",
        [](std::uint16_t of, const Text& text) { return samples::AsciiUnterminated(of, text); });
    if (!CamerasOwn(tag).empty()) {
        add("-of-the-camera",
            [](std::uint16_t of, const Text& text) { return samples::Ascii(of, CamerasOwn(of) + text); });
        add("-before-the-camera", [](std::uint16_t of, const Text& text) {
            return samples::AsciiUnterminated(of, text + CamerasOwn(of));
        });
    }
}

void AddTexts(CaseList& cases, const EditableDirectory& where, std::uint16_t tag) {
    const auto add = [&](const char* what, const Entry& entry) {
        AddEdit(cases, "texts", where, std::to_string(tag) + "/" + what, Pixels::kKnown,
                [entry](Entries& entries) { samples::Set(entries, entry); });
    };
    add("no-length", samples::AsciiUnterminated(tag, ""));
    add("only-nul", samples::Ascii(tag, ""));
    add("no-length-at-the-end", samples::RawEntry(tag, tiff::kAscii, 0, 0xFFFFFFFF));
    for (const OddText& odd : OddTexts()) {
        AddOddText(cases, where, tag, odd);
    }
}

/// The text tags that the camera writes, plus those that it does not write but the program reads or copies.
std::vector<std::uint16_t> TextTags(const EditableDirectory& where) {
    std::vector<std::uint16_t> tags;
    for (const Entry& entry : where.entries) {
        if (entry.type == tiff::kAscii) {
            tags.push_back(entry.tag);
        }
    }
    if (where.directory == Directory::kMain) {
        tags.insert(tags.end(), {tag::kImageDescription, tag::kHostComputer});
    }
    if (where.kind == Kind::kPair && where.directory == Directory::kMain) {
        tags.push_back(tag::kCopyright);
    }
    if (where.directory == Directory::kExif) {
        tags.insert(tags.end(), {tag::kSubSecTimeOriginal, tag::kLensModel});
    }
    return tags;
}

}  // namespace

void AddTextCases(CaseList& cases) {
    for (const EditableDirectory& where : EditableDirectories()) {
        for (const std::uint16_t tag : TextTags(where)) {
            AddTexts(cases, where, tag);
        }
    }
}

}  // namespace matrix
