// SPDX-License-Identifier: MIT
#include "tests/matrix/entry_cases.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/matrix/edits.h"
#include "tests/matrix/tiff_places.h"

namespace matrix {

namespace {

using samples::Entry;
using Entries = std::vector<Entry>;

constexpr std::size_t kMostEntries = 65535;
/// A longer value is not repeated 65535 times, because the file would be larger than any of the camera's.
constexpr std::size_t kLongestRepeated = 100;

/// A copy of `entry` with another value field; a value outside the entry is left out.
Entry WithField(const Entry& entry, std::uint32_t field) {
    return samples::RawEntry(entry.tag, entry.type, entry.count, field);
}

Entry* Nth(Entries& entries, std::size_t index) {
    return &entries.at(index);
}

/// Adds all changes to the entry at `index` of an IFD.
void AddOneEntry(CaseList& cases, const EditableDirectory& where, std::size_t index) {
    const auto at = static_cast<std::ptrdiff_t>(index);
    const Entry& entry = where.entries.at(index);
    const std::string tag = std::to_string(entry.tag);
    const Pixels pixels = where.directory == Directory::kRaw || MovesPixels(where.directory, entry.tag)
                              ? Pixels::kAny
                              : Pixels::kKnown;
    const auto add = [&](const std::string& what, const Edit& edit) {
        AddEdit(cases, "entries", where, tag + "/" + what, pixels, edit);
    };
    add("missing", [at](Entries& entries) { entries.erase(entries.begin() + at); });
    add("twice",
        [index, at](Entries& entries) { entries.insert(entries.begin() + at, *Nth(entries, index)); });
    add("again-at-the-end", [index](Entries& entries) { entries.push_back(*Nth(entries, index)); });
    add("then-nothing", [index, at](Entries& entries) {
        entries.insert(entries.begin() + at + 1, WithField(*Nth(entries, index), 0));
    });
    add("then-beyond-the-end", [index, at](Entries& entries) {
        entries.insert(entries.begin() + at + 1, WithField(*Nth(entries, index), 0xFFFFFFFFU));
    });
    add("alone", [index](Entries& entries) { entries = {*Nth(entries, index)}; });
    if (entry.value.size() <= kLongestRepeated) {
        add("65535-times", [index](Entries& entries) {
            const Entry copy = *Nth(entries, index);
            entries.resize(kMostEntries, copy);
        });
    }
    add("65535-times-the-same-bytes", [index](Entries& entries) {
        const Entry copy = WithField(*Nth(entries, index), 0);
        entries.resize(kMostEntries, copy);
    });
}

void AddWholeDirectory(CaseList& cases, const EditableDirectory& where) {
    const auto add = [&](const std::string& what, const Edit& edit) {
        AddEdit(cases, "entries", where, what, Pixels::kKnown, edit);
    };
    add("none", [](Entries& entries) { entries.clear(); });
    add("reversed", [](Entries& entries) { std::reverse(entries.begin(), entries.end()); });
    add("halves-exchanged", [](Entries& entries) {
        const auto half = static_cast<std::ptrdiff_t>(entries.size() / 2);
        std::rotate(entries.begin(), entries.begin() + half, entries.end());
    });
    add("all-twice", [](Entries& entries) {
        const Entries copy = entries;
        entries.insert(entries.end(), copy.begin(), copy.end());
    });
    add("65535-unknown", [](Entries& entries) {
        for (std::uint32_t i = 0; entries.size() < kMostEntries; ++i) {
            entries.push_back(samples::Long(static_cast<std::uint16_t>(i), i));
        }
    });
    add("65535-unknown-first", [](Entries& entries) {
        Entries unknown;
        for (std::uint32_t i = 1; unknown.size() + entries.size() < kMostEntries; ++i) {
            unknown.push_back(samples::Short(0, static_cast<std::uint16_t>(i)));
        }
        entries.insert(entries.begin(), unknown.begin(), unknown.end());
    });
}

}  // namespace

void AddEntryCases(CaseList& cases) {
    for (const EditableDirectory& where : EditableDirectories()) {
        AddWholeDirectory(cases, where);
        for (std::size_t index = 0; index < where.entries.size(); ++index) {
            AddOneEntry(cases, where, index);
        }
    }
}

}  // namespace matrix
