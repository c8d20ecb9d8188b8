// SPDX-License-Identifier: MIT
#include "samples/sample_databases.h"

#include <algorithm>
#include <ios>
#include <sstream>

namespace samples {

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
    };
    return kLenses;
}

std::string LensDatabase() {
    std::ostringstream text;
    for (const Lens& lens : Lenses()) {
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
        for (const int value : {defect.column, defect.first_row, defect.column, defect.end_row}) {
            text << "Line = " << value << "\n";
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
