// SPDX-License-Identifier: MIT
#include "calibrate/findings_text.h"

#include <algorithm>
#include <cstddef>

#include "calibrate/number_text.h"

namespace findings_text {

namespace {

const char* KindText(DefectKind kind) {
    switch (kind) {
        case DefectKind::kBright:
            return "bright";
        case DefectKind::kLow:
            return "low";
        case DefectKind::kSaturated:
            return "saturated";
        case DefectKind::kStuck:
            return "stuck";
        case DefectKind::kUnsteady:
            return "not with the ISO speed";
        case DefectKind::kBlind:
            return "blind to light";
        case DefectKind::kWeak:
            return "weak in light";
        case DefectKind::kStrong:
            return "strong in light";
    }
    return "";
}

bool IsNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("+-0123456789.%") == std::string::npos;
}

std::string Section(const std::string& title, const Row& heading, const std::vector<Row>& rows) {
    return rows.empty() ? "" : "\n" + title + "\n\n" + Table(heading, rows);
}

}  // namespace

Row DefectHeading() {
    return {"Column", "Rows", "Kind", "Strength", "In noise", "Seen in"};
}

Row DefectRow(const Defect& defect) {
    const bool light = ShowsInLight(defect.kind);
    constexpr float percent = 100;
    return {std::to_string(defect.column),
            std::to_string(defect.first_row) + "-" + std::to_string(defect.end_row - 1),
            KindText(defect.kind),
            light ? Signed(percent * defect.strength, 1) + "%" : Signed(defect.strength, 1),
            Fixed(defect.in_noise, 0),
            std::to_string(defect.seen) + " of " + std::to_string(defect.exposures) +
                (light ? " flat" : " dark")};
}

Row StripesHeading() {
    return {"Exposure", "ISO", "Stripes", "Corrected", "Noise alone"};
}

Row StripesRow(const DarkExposure& exposure, const Stripes& stripes) {
    return {exposure.name, std::to_string(exposure.iso), Fixed(stripes.before, 2),
            stripes.after < 0 ? "-" : Fixed(stripes.after, 2), Fixed(stripes.noise, 2)};
}

std::string Table(const Row& heading, const std::vector<Row>& rows) {
    std::vector<std::size_t> widths;
    std::vector<bool> right;
    for (std::size_t i = 0; i < heading.size(); ++i) {
        std::size_t width = heading[i].size();
        bool numbers = i > 0;
        for (const Row& row : rows) {
            width = std::max(width, row[i].size());
            numbers = numbers && IsNumber(row[i]);
        }
        widths.push_back(width);
        right.push_back(numbers);
    }
    std::string text;
    const auto add = [&](const Row& row) {
        std::string line = " ";
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string blanks(widths[i] - row[i].size(), ' ');
            line.append(" ").append(right[i] ? blanks + row[i] : row[i] + blanks).append(" ");
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    };
    add(heading);
    for (const Row& row : rows) {
        add(row);
    }
    return text;
}

std::string BlackLevel(const DarkLevels& levels, std::span<const float> subtracted) {
    const std::string black = std::to_string(levels.BlackAfter(subtracted));
    return "With -s the black level is " + black + ": convert with -s -b " + black + ".\n";
}

std::string Findings(const Calibration& calibration) {
    std::vector<Row> sure;
    std::vector<Row> doubtful;
    for (const Defect& defect : calibration.defects()) {
        (defect.doubtful ? doubtful : sure).push_back(DefectRow(defect));
    }
    std::vector<Row> stripes;
    for (std::size_t i = 0; i < calibration.darks().exposures().size(); ++i) {
        stripes.push_back(StripesRow(calibration.darks().exposures()[i], calibration.StripesOf(i)));
    }
    std::string text = sure.empty() ? "\nNo defective columns.\n" : "";
    text += Section("Defective columns (strength in raw units at ISO 160, or in per cent of the light):",
                    DefectHeading(), sure);
    text += Section("Doubtful:", DefectHeading(), doubtful);
    text +=
        Section("Stripes, as the standard deviation of the columns in raw units:", StripesHeading(), stripes);
    return text;
}

}  // namespace findings_text
