// SPDX-License-Identifier: MIT
#ifndef VELMARCON_CALIBRATE_REPORT_PAGE_H
#define VELMARCON_CALIBRATE_REPORT_PAGE_H

#include <string>
#include <utility>
#include <vector>

#include "calibrate/calibration.h"

/// A picture on the page.
struct ReportPicture {
    std::string file;
    std::string caption;  ///< also its text for screen readers
};

/// The content of the page.
struct ReportContents {
    int serial = 0;
    std::string command;
    std::vector<std::string> left_out;
    std::vector<ReportPicture> exposures;  ///< before and after
    std::vector<ReportPicture> plots;
    std::vector<ReportPicture> defects;
    std::string missing;  ///< what could not be shown and why; empty if nothing is missing
};

/// What every such page contains, so that a later report recognises the page that it may replace.
constexpr const char* kReportMark = R"(<meta name="generator" content="velmarcon-calibrate">)";

/// The page as one HTML file without scripts; it refers to its pictures by file name.
std::string ReportPage(const ReportContents& contents, const Calibration& calibration);

/// `text` with the special characters of HTML escaped.
std::string EscapedHtml(const std::string& text);

#endif  // VELMARCON_CALIBRATE_REPORT_PAGE_H
