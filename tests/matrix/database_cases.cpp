// SPDX-License-Identifier: MIT
#include "tests/matrix/database_cases.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "samples/camera_jpeg.h"
#include "samples/shot.h"
#include "tests/matrix/base_inputs.h"
#include "tests/matrix/odd_texts.h"

namespace matrix {

namespace {

using MakeText = std::function<std::string()>;

/// The undamaged input. If the options include a lens code, it has no code of its own.
Bytes Input(const OptionSet& options) {
    samples::Shot shot;
    if (options.arguments.size() > 1) {
        shot.lens_code = 0;
    }
    return options.kind == Kind::kPair ? PairJpeg(ByteOrder::kLittleEndian, shot) : CameraDng(shot);
}

std::string NameOf(const OptionSet& options) {
    std::string name = options.kind == Kind::kPair ? "pair" : "dng";
    for (const std::string& argument : options.arguments) {
        name += argument;
    }
    return name;
}

/// Adds the case with each set of options for a DNG but, because pairs have large pictures, with only one set
/// for a pair.
void AddSets(CaseList& cases, const char* group, const std::string& name, const std::vector<OptionSet>& sets,
             Pixels pixels, const std::function<Files(const OptionSet&)>& files) {
    const auto pairs = static_cast<std::size_t>(std::ranges::count(sets, Kind::kPair, &OptionSet::kind));
    const std::size_t turn = cases.cases().size() % pairs;
    std::size_t pair = 0;
    for (const OptionSet& options : sets) {
        if (options.kind == Kind::kDng || pair++ == turn) {
            cases.Add(group, name + "/" + NameOf(options), options, pixels,
                      [&options, files] { return files(options); });
        }
    }
}

void AddLenses(CaseList& cases, const std::string& name, const MakeText& text) {
    AddSets(cases, "lens-database", name, LensOptionSets(), Pixels::kKnown, [text](const OptionSet& options) {
        return Files{Input(options), text(), SensorDatabase()};
    });
}

void AddSensors(CaseList& cases, const std::string& name, const MakeText& text) {
    AddSets(cases, "sensor-database", name, SensorOptionSets(), Pixels::kAny,
            [text](const OptionSet& options) {
                return Files{Input(options), LensDatabase(), text()};
            });
}

/// `text` with `value` in place of the values of `key` from number `first` to `last`, counted from 0.
std::string WithValue(const std::string& text, std::string_view key, std::size_t first, std::size_t last,
                      const std::string& value) {
    std::istringstream lines(text);
    std::string result;
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(key)) {
            if (first <= number && number <= last) {
                line = std::string(key) + " = " + value;
            }
            ++number;
        }
        result += line + "\n";
    }
    return result;
}

/// `text` with `name` as the name of the first section.
std::string WithSection(const std::string& text, const std::string& name) {
    return "[" + name + "]" + text.substr(text.find(']') + 1);
}

constexpr std::size_t kAll = 65535;

struct Values {
    const char* name;
    const char* key;
    std::size_t first;
    std::size_t last;
};

void AddLensNumbers(CaseList& cases, const NamedText& number) {
    constexpr std::array<Values, 7> places = {{{"focal-length", "FocalLength", 0, 0},
                                               {"first-aperture", "Aperture", 0, 0},
                                               {"an-aperture", "Aperture", 3, 3},
                                               {"all-apertures", "Aperture", 0, kAll},
                                               {"maker", "Maker", 0, 0},
                                               {"model", "Model", 0, 0},
                                               {"serial-number", "SerialNo", 0, 0}}};
    for (const Values& place : places) {
        AddLenses(cases, std::string(place.name) + "/" + number.name, [place, &number] {
            return WithValue(LensDatabase(), place.key, place.first, place.last, number.text);
        });
    }
    AddLenses(cases, "section/" + number.name,
              [&number] { return WithSection(LensDatabase(), number.text); });
}

void AddSensorNumbers(CaseList& cases, const NamedText& number) {
    constexpr std::array<Values, 8> places = {{{"column", "Line", 0, 0},
                                               {"first-row", "Line", 1, 1},
                                               {"second-column", "Line", 2, 2},
                                               {"end-row", "Line", 3, 3},
                                               {"all-lines", "Line", 0, kAll},
                                               {"first-level", "LevelCorrection", 0, 0},
                                               {"last-level", "LevelCorrection", 3967, 3967},
                                               {"all-levels", "LevelCorrection", 0, kAll}}};
    // Replacing each of 4000 numbers with a long text would exceed the size limit of a database.
    constexpr std::size_t longest_repeated = 1000;
    for (const Values& place : places) {
        if (place.last == kAll && number.text.size() > longest_repeated) {
            continue;
        }
        AddSensors(cases, std::string(place.name) + "/" + number.name, [place, &number] {
            return WithValue(SensorDatabase(), place.key, place.first, place.last, number.text);
        });
    }
    AddSensors(cases, "section/" + number.name,
               [&number] { return WithSection(SensorDatabase(), number.text); });
}

}  // namespace

void AddDatabaseCases(CaseList& cases) {
    for (const NamedText& number : OddNumbers()) {
        AddLensNumbers(cases, number);
        AddSensorNumbers(cases, number);
    }
    for (const Rewriting& rewriting : Rewritings()) {
        const std::string name = std::string("text/") + rewriting.name;
        AddLenses(cases, name, [&rewriting] { return rewriting.rewrite(LensDatabase()); });
        AddSensors(cases, name, [&rewriting] { return rewriting.rewrite(SensorDatabase()); });
    }
}

}  // namespace matrix
