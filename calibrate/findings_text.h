// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_FINDINGS_TEXT_H
#define VELMARCON_CALIBRATE_FINDINGS_TEXT_H

#include <string>
#include <vector>

#include "calibrate/calibration.h"

/// What was found, in words. Each text is whole lines.
namespace findings_text {

/// A row of a table, of texts.
using Row = std::vector<std::string>;

/// Heading and rows of the table of defects: column, rows, kind, strength, in units of the noise, seen in.
Row DefectHeading();
Row DefectRow(const Defect& defect);

/// Heading and rows of the table of stripes: exposure, ISO, before, after, noise alone.
Row StripesHeading();
Row StripesRow(const DarkExposure& exposure, const Stripes& stripes);

/// A table with its columns under each other; the first column of texts, the others right-aligned when they
/// are numbers. No line ends in a blank.
std::string Table(const Row& heading, const std::vector<Row>& rows);

/// Defects, doubtful ones, stripes.
std::string Findings(const Calibration& calibration);

}  // namespace findings_text

#endif  // VELMARCON_CALIBRATE_FINDINGS_TEXT_H
