// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_FINDINGS_TEXT_H
#define VELMARCON_CALIBRATE_FINDINGS_TEXT_H

#include <span>
#include <string>
#include <vector>

#include "calibrate/calibration.h"

/// The findings in words. Each text consists of whole lines.
namespace findings_text {

/// The cells of a table row.
using Row = std::vector<std::string>;

/// Heading and rows of the table of defects: column, rows, kind, strength, strength relative to the noise,
/// exposures.
Row DefectHeading();
Row DefectRow(const Defect& defect);

/// Heading and rows of the table of stripes: exposure, ISO, before, after, noise alone.
Row StripesHeading();
Row StripesRow(const DarkExposure& exposure, const Stripes& stripes);

/// Formats a table with aligned columns: the first column is left-aligned, the others are right-aligned if
/// they hold numbers. No line ends in a blank.
std::string Table(const Row& heading, const std::vector<Row>& rows);

/// The line that says how to convert after `-s` has subtracted these values of a database, one for each
/// column.
std::string BlackLevel(const DarkLevels& levels, std::span<const float> subtracted);

/// The sections on defects, doubtful defects and stripes.
std::string Findings(const Calibration& calibration);

}  // namespace findings_text

#endif  // VELMARCON_CALIBRATE_FINDINGS_TEXT_H
