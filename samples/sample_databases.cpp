// SPDX-License-Identifier: MIT
#include "samples/sample_databases.h"

#include <algorithm>
#include <ios>
#include <set>
#include <sstream>

namespace samples {

namespace {

struct TriElmarSetting {
    std::uint8_t code;
    std::uint8_t frame_selector;
    std::uint32_t focal_length;
    std::uint16_t focal_length_35mm;
};

/// One of the two Tri-Elmar lenses, set to one of its three focal lengths.
Lens TriElmar(const TriElmarSetting& setting) {
    constexpr std::uint8_t kLongTriElmar = 42;
    const bool is_long = setting.code == kLongTriElmar;
    return {setting.code,
            setting.frame_selector,
            setting.focal_length,
            setting.focal_length_35mm,
            {262144, 65536},
            is_long ? "101010" : "010000",
            is_long ? "Tri-Elmar-M 28-35-50mm f/4 ASPH." : "Tri-Elmar-M 16-18-21mm f/4 ASPH.",
            {"4", "5.6", "8", "11", "16", "22"}};
}

void WriteGroup(std::ostringstream& text, int column, int first_row, int end_row) {
    for (const int value : {column, first_row, column, end_row}) {
        text << "Line = " << value << "\n";
    }
}

}  // namespace

const std::vector<Lens>& Lenses() {
    static const std::vector<Lens> kLenses = {
        {33,
         3,
         50,
         67,
         {131072, 65536},
         "100001",
         "Summicron-M 50mm f/2",
         {"2", "2.8", "4", "5.6", "8", "11", "16"}},
        {28,
         1,
         28,
         37,
         {194698, 65536},
         "011100",
         "Elmarit-M 28mm f/2.8 ASPH.",
         {"2.8", "4", "5.6", "8", "11", "16", "22"}},
        {29,
         2,
         35,
         47,
         {63626, 65536},
         "011101",
         "Summilux-M 35mm f/1.4 ASPH.",
         {"1.4", "2", "2.8", "4", "5.6", "8", "11", "16"}},
        TriElmar({42, 1, 28, 37}),
        TriElmar({42, 2, 35, 47}),
        TriElmar({42, 3, 50, 67}),
        TriElmar({16, 1, 16, 21}),
        TriElmar({16, 2, 18, 24}),
        TriElmar({16, 3, 21, 28}),
    };
    return kLenses;
}

void Mount(const Lens* lens, Shot& shot) {
    constexpr std::uint8_t kSelectorWithoutCode = 3;
    shot.lens_code = lens == nullptr ? std::uint8_t{0} : lens->code;
    shot.frame_selector = lens == nullptr ? kSelectorWithoutCode : lens->frame_selector;
    shot.focal_length = {lens == nullptr ? 0 : 1000 * lens->focal_length, 1000};
    shot.focal_length_35mm = lens == nullptr ? std::uint16_t{0} : lens->focal_length_35mm;
    shot.max_aperture = lens == nullptr ? Rational{0, 65536} : lens->max_aperture;
}

std::string LensDatabase() {
    std::ostringstream text;
    std::set<std::string> written;
    for (const Lens& lens : Lenses()) {
        if (!written.insert(lens.bits).second) {
            continue;
        }
        text << "[" << lens.bits << "]\nMaker = Leica\nModel = " << lens.model << "\nSerialNo = 1234567\n"
             << "FocalLength = " << lens.focal_length << "\n";
        for (const std::string& aperture : lens.apertures) {
            text << "Aperture = " << aperture << "\n";
        }
        text << "\n";
    }
    return text.str();
}

std::string SensorDatabase(std::uint32_t serial_number, const SensorOptions& options) {
    SensorOptions sensor = options;
    sensor.iso = 160;
    std::ostringstream text;
    text << "[" << serial_number << "]\n";
    for (const ColumnDefect& defect : sensor.defects) {
        // A column that is bad from the top gets two groups: DNGs that the camera wrote lack the first rows.
        constexpr int split = 6;
        if (defect.first_row < split && defect.end_row > split) {
            WriteGroup(text, defect.column, defect.first_row, split);
            WriteGroup(text, defect.column, split, defect.end_row);
        } else {
            WriteGroup(text, defect.column, defect.first_row, defect.end_row);
        }
    }
    const std::vector<float> levels = ColumnDarkLevels(sensor);
    const float darkest = *std::ranges::min_element(levels);
    text << std::fixed;
    for (const float level : levels) {
        text << "LevelCorrection = " << level - darkest << "\n";
    }
    return text.str();
}

}  // namespace samples
