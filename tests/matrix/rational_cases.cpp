// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "samples/maker_note.h"
#include "tests/matrix/edits.h"
#include "tests/matrix/entry_cases.h"
#include "tiff/tags.h"
#include "tiff/types.h"

namespace matrix {

namespace {

using samples::Entry;
using samples::Rational;
using Entries = std::vector<Entry>;

constexpr std::uint32_t kLargest = 0xFFFFFFFF;  // or -1
constexpr std::uint32_t kLargestSigned = 0x7FFFFFFF;
constexpr std::uint32_t kLowestSigned = 0x80000000;

constexpr std::array<Rational, 20> kFractions = {{
    {0, 0},
    {1, 0},
    {1000000, 0},
    {kLargest, 0},
    {kLowestSigned, 0},
    {0, kLargest},
    {0, 1},
    {1, 1},
    {1, kLargest},
    {1, kLowestSigned},
    {kLargest, 1},
    {kLargest, kLargest},
    {kLargestSigned, 1},
    {kLargestSigned, kLargest},
    {1, kLargestSigned},
    {kLowestSigned, 1},
    {kLowestSigned, kLargest},
    {kLowestSigned, kLowestSigned},
    {kLargest, kLowestSigned},
    {kLowestSigned + 1, kLargest},
}};

bool IsRational(const Entry& entry) {
    return entry.type == tiff::kRational || entry.type == tiff::kSRational;
}

std::string Text(Rational fraction) {
    return std::to_string(fraction.numerator) + "-" + std::to_string(fraction.denominator);
}

/// An entry with as many fractions as `entry`, all equal to `fraction`.
Entry Filled(const Entry& entry, std::uint16_t type, Rational fraction) {
    Entry filled = samples::Rationals(entry.tag, std::vector(entry.value.size() / 8, fraction));
    filled.type = type;
    return filled;
}

void AddEveryFraction(CaseList& cases, const EditableDirectory& where, const Entry& entry) {
    for (const std::uint16_t type : {tiff::kRational, tiff::kSRational}) {
        for (const Rational fraction : kFractions) {
            const std::string name =
                std::to_string(entry.tag) + "/type" + std::to_string(type) + "/" + Text(fraction);
            AddEdit(cases, "rationals", where, name, Pixels::kKnown,
                    [entry, type, fraction](Entries& entries) {
                        samples::Set(entries, Filled(entry, type, fraction));
                    });
        }
    }
}

/// Adds pairs of brightness values in the maker note, from which the f-number is estimated.
void AddBrightnessPairs(CaseList& cases, const EditableDirectory& where) {
    constexpr std::array<std::uint32_t, 8> numerators = {
        0,     1, kLargest, kLargestSigned, kLowestSigned, kLowestSigned + 285082, kLargestSigned - 285082,
        285082};
    for (const std::uint32_t external : numerators) {
        for (const std::uint32_t measured : numerators) {
            const std::string name =
                "brightness/" + std::to_string(external) + "-" + std::to_string(measured);
            AddEdit(cases, "rationals", where, name, Pixels::kKnown, [external, measured](Entries& entries) {
                samples::Set(entries, samples::Rationals(samples::note::kExternalLight, {{external, 65536}}));
                samples::Set(entries, samples::Rationals(samples::note::kMeasuredLight, {{measured, 65536}}));
            });
        }
    }
}

/// The IFD's rational entries, plus those that the camera does not write but the program reads.
Entries RationalEntries(const EditableDirectory& where) {
    Entries entries;
    std::ranges::copy_if(where.entries, std::back_inserter(entries), IsRational);
    if (where.directory == Directory::kExif) {
        entries.push_back(samples::Rationals(tag::kFNumber, {{28, 10}}));
        entries.push_back(samples::Rationals(tag::kSubjectDistance, {{3, 1}}));
    }
    return entries;
}

}  // namespace

void AddRationalCases(CaseList& cases) {
    for (const EditableDirectory& where : EditableDirectories()) {
        for (const Entry& entry : RationalEntries(where)) {
            AddEveryFraction(cases, where, entry);
        }
        if (where.directory == Directory::kNote) {
            AddBrightnessPairs(cases, where);
        }
    }
}

}  // namespace matrix
