// SPDX-License-Identifier: MIT
#include "calibrate/database_check.h"

#include <algorithm>
#include <cmath>

#include "calibrate/findings_text.h"
#include "calibrate/number_text.h"
#include "calibrate/sensor_grid.h"

namespace {

using findings_text::Row;

constexpr float kHidden = 0.1F;  // relative to the noise of a pixel

/// The number of rows of the defect that are listed.
int ListedRowsOf(const Defect& defect, const std::vector<ListedRows>& listed) {
    std::vector<bool> rows(static_cast<std::size_t>(defect.end_row - defect.first_row));
    for (const ListedRows& group : listed) {
        if (group.column != defect.column) {
            continue;
        }
        for (int row = std::max(group.first_row, defect.first_row);
             row < std::min(group.end_row, defect.end_row); ++row) {
            rows[static_cast<std::size_t>(row - defect.first_row)] = true;
        }
    }
    return static_cast<int>(std::ranges::count(rows, true));
}

std::vector<Row> NotListed(const Calibration& calibration, const std::vector<ListedRows>& listed) {
    constexpr double enough = 0.9;
    std::vector<Row> rows;
    for (const Defect& defect : calibration.defects()) {
        if (!defect.doubtful && ListedRowsOf(defect, listed) < enough * (defect.end_row - defect.first_row)) {
            rows.push_back(findings_text::DefectRow(defect));
        }
    }
    return rows;
}

/// A list that was made by hand often lacks defects; then there is no need to make everything again.
std::string Verdict(bool levels_fit, bool list_fits) {
    if (!levels_fit) {
        return "The database does not fit: make it again.\n";
    }
    return list_fits ? "The database fits.\n"
                     : "The database does not fit: list these defects, or make it again.\n";
}

}  // namespace

CheckResult CheckDatabase(const Calibration& calibration, const database_text::Values& values) {
    bool levels_fit = true;
    std::vector<Row> rows;
    for (const DarkExposure& exposure : calibration.darks().exposures()) {
        std::vector<float> left = exposure.columns;
        for (std::size_t x = 0; x < left.size(); ++x) {
            left[x] -= exposure.gain * values.levels[x];
        }
        const Stripes stripes = {
            .before = StripeSize(exposure.columns, calibration.mask()),
            .after = StripeSize(left, calibration.mask()),
            .noise = exposure.noise.pixel / std::sqrt(static_cast<float>(sensor_grid::kRows))};
        const float beyond = (stripes.after * stripes.after) - (stripes.noise * stripes.noise);
        const float limit = kHidden * exposure.noise.pixel;
        levels_fit = levels_fit && beyond <= limit * limit;
        rows.push_back(findings_text::StripesRow(exposure, stripes));
        rows.back().push_back(Fixed(limit, 2));
    }
    Row heading = findings_text::StripesHeading();
    heading.push_back("Limit");
    std::string text = "\nStripes, as the standard deviation of the columns in raw units:\n\n" +
                       findings_text::Table(heading, rows);
    const std::vector<Row> unlisted = NotListed(calibration, database_text::ListedIn(values.lines));
    if (!unlisted.empty()) {
        text += "\nDefects that are not listed:\n\n" +
                findings_text::Table(findings_text::DefectHeading(), unlisted);
    }
    const bool good = levels_fit && unlisted.empty();
    text += "\n" + Verdict(levels_fit, unlisted.empty());
    text += good ? findings_text::BlackLevel(calibration.levels(), values.levels) : "";
    return {.good = good, .text = text};
}
