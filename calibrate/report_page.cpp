// SPDX-License-Identifier: MIT
#include "calibrate/report_page.h"

#include "calibrate/findings_text.h"

namespace {

using findings_text::Row;

constexpr const char* kHead =
    "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
    "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
    "<meta name=\"color-scheme\" content=\"light dark\">\n<style>\n"
    ":root { color-scheme: light dark; }\n"
    "body { font: 1rem/1.5 system-ui, sans-serif; max-width: 64rem; margin: 0 auto; padding: 0 1rem 3rem;\n"
    "  color: CanvasText; background: Canvas; }\n"
    "h1, h2 { line-height: 1.2; }\n"
    "figure { margin: 1rem 0; }\n"
    "figcaption { margin-top: .25rem; }\n"
    "img { max-width: 100%; height: auto; background: white; }\n"
    ".defects { display: flex; flex-wrap: wrap; gap: 1.5rem; }\n"
    ".defects figure { margin: 0; max-width: 100%; }\n"
    ".defects img { image-rendering: pixelated; }\n"
    ".wide { overflow-x: auto; }\n"
    "table { border-collapse: collapse; }\n"
    "caption { text-align: left; font-weight: bold; padding: .5rem 0; }\n"
    "th, td { text-align: left; padding: .2rem .8rem .2rem 0; border-bottom: 1px solid GrayText;\n"
    "  white-space: nowrap; }\n"
    "pre { white-space: pre-wrap; overflow-wrap: anywhere; }\n"
    "@media print { body { max-width: none; } figure, tr { break-inside: avoid; } }\n"
    "</style>\n";

std::string Cells(const Row& row, const char* tag) {
    std::string text = "<tr>";
    for (const std::string& cell : row) {
        text += std::string("<") + tag + ">" + EscapedHtml(cell) + "</" + (tag[1] == 'd' ? "td" : "th") + ">";
    }
    return text + "</tr>\n";
}

std::string Table(const std::string& caption, const Row& heading, const std::vector<Row>& rows) {
    if (rows.empty()) {
        return "";
    }
    std::string text = "<div class=\"wide\">\n<table>\n<caption>" + EscapedHtml(caption) +
                       "</caption>\n<thead>" + Cells(heading, "th scope=\"col\"") + "</thead>\n<tbody>\n";
    for (const Row& row : rows) {
        text += Cells(row, "td");
    }
    return text + "</tbody>\n</table>\n</div>\n";
}

std::string Figure(const ReportPicture& picture) {
    const std::string caption = EscapedHtml(picture.caption);
    return "<figure>\n<img src=\"" + EscapedHtml(picture.file) + "\" alt=\"" + caption + "\">\n<figcaption>" +
           caption + "</figcaption>\n</figure>\n";
}

std::string Figures(const std::vector<ReportPicture>& pictures) {
    std::string text;
    for (const ReportPicture& picture : pictures) {
        text += Figure(picture);
    }
    return text;
}

std::string LeftOut(const std::vector<std::string>& left_out) {
    if (left_out.empty()) {
        return "<p>Nothing was left out.</p>\n";
    }
    std::string text = "<ul>\n";
    for (const std::string& line : left_out) {
        text += "<li>" + EscapedHtml(line) + "</li>\n";
    }
    return text + "</ul>\n";
}

std::string Defects(const ReportContents& contents, const Calibration& calibration) {
    std::vector<Row> sure;
    std::vector<Row> doubtful;
    for (const Defect& defect : calibration.defects()) {
        (defect.doubtful ? doubtful : sure).push_back(findings_text::DefectRow(defect));
    }
    std::string text = "<h2>Defective columns</h2>\n";
    text += sure.empty() ? "<p>No defects were found.</p>\n" : "";
    text += Table("Strength in raw units at ISO 160, or in per cent of the light",
                  findings_text::DefectHeading(), sure);
    text += Table("Doubtful", findings_text::DefectHeading(), doubtful);
    if (!contents.defects.empty()) {
        text +=
            "<p>Each defect enlarged three times, brightened: as recorded, marked, repaired.</p>\n<div "
            "class=\"defects\">\n" +
            Figures(contents.defects) + "</div>\n";
    }
    return text;
}

}  // namespace

std::string EscapedHtml(const std::string& text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += character;
        }
    }
    return escaped;
}

std::string ReportPage(const ReportContents& contents, const Calibration& calibration) {
    const std::string title = "Sensor of camera " + std::to_string(contents.serial);
    std::vector<Row> stripes;
    for (std::size_t i = 0; i < calibration.darks().exposures().size(); ++i) {
        stripes.push_back(
            findings_text::StripesRow(calibration.darks().exposures()[i], calibration.StripesOf(i)));
    }
    std::string page = kHead;
    page += std::string(kReportMark) + "\n<title>" + title + "</title>\n</head>\n<body>\n<main>\n<h1>" +
            title + "</h1>\n";
    page += "<p>" + std::to_string(stripes.size()) + " dark and " + std::to_string(calibration.flats()) +
            " flat exposures.</p>\n";
    page += contents.missing.empty() ? "" : "<p><strong>" + EscapedHtml(contents.missing) + "</strong></p>\n";
    page += contents.exposures.empty() ? "" : "<h2>Before and after</h2>\n" + Figures(contents.exposures);
    page += "<h2>Dark levels</h2>\n" + Figures(contents.plots);
    page += Table("Stripes: standard deviation of the columns in raw units", findings_text::StripesHeading(),
                  stripes);
    page +=
        "<p>Stripes: how much the columns differ in this exposure. Corrected: how much after correction with "
        "dark "
        "levels from the other exposures. Noise alone: how much the noise of this exposure would leave of "
        "perfect "
        "levels.</p>\n";
    page += Defects(contents, calibration);
    page += "<h2>Left out</h2>\n" + LeftOut(contents.left_out);
    page += "<h2>Command</h2>\n<pre>" + EscapedHtml(contents.command) + "</pre>\n</main>\n</body>\n</html>\n";
    return page;
}
