// SPDX-License-Identifier: MIT
#include "calibrate/report.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "base/pixel.h"
#include "calibrate/database_file.h"
#include "calibrate/database_text.h"
#include "calibrate/pictures.h"
#include "calibrate/progress.h"
#include "calibrate/report_page.h"
#include "calibrate/statistics.h"
#include "sensor/sensdb.h"
#include "sensor/sensorfixtools.h"
#include "system/path_names.h"
#include "system/replacement_file.h"
#include "system/system_error.h"
#include "system/system_path.h"

namespace {

using sensor_grid::kColumns;
using sensor_grid::kRows;

constexpr int kReduction = 4;
constexpr int kCropWidth = 41;   // columns
constexpr int kCropHeight = 61;  // rows
constexpr int kEnlargement = 3;

/// Provides the pictures of one exposure: as recorded, marked, repaired.
class Exposure {
  public:
    Exposure(std::uint32_t serial, std::uint16_t iso, std::vector<Pixel>& frame,
             const Calibration& calibration)
        : serial_(serial), iso_(iso), recorded_(frame), database_("") {
        auto& camera = database_.Camera(serial);
        std::vector<ListedRows> runs;
        for (const Defect& defect : calibration.defects()) {
            runs.push_back({defect.column, defect.first_row, defect.end_row});
        }
        camera.Line = database_text::LinesOfRuns(runs);
        camera.LevelCorrection = calibration.levels().above_darkest;
        changed_ = frame;
    }

    const std::vector<Pixel>& recorded() const { return recorded_; }

    const std::vector<Pixel>& Marked() {
        changed_ = recorded_;
        tools_.fixPixelLine(serial_, &changed_, kColumns, kRows, &database_, true);
        return changed_;
    }

    const std::vector<Pixel>& Repaired() {
        changed_ = recorded_;
        tools_.fixPixelLine(serial_, &changed_, kColumns, kRows, &database_, false);
        tools_.fixBlackLevels(serial_, &changed_, iso_, kColumns, kRows, kColumns * kRows, &database_, false);
        return changed_;
    }

  private:
    std::uint32_t serial_;
    std::uint16_t iso_;
    const std::vector<Pixel>& recorded_;
    std::vector<Pixel> changed_;
    sensdb database_;
    sensorfixtools tools_;
};

constexpr float kBelow = 4;  // deviations
constexpr float kAbove = 6;

/// A scale from kBelow deviations below the median of some pixels to kAbove above it.
GreyScale ScaleOf(const std::vector<Pixel>& frame, std::size_t first, std::size_t count, float shrink) {
    std::vector<float> values;
    constexpr std::size_t step = 7;
    for (std::size_t i = first; i < std::min(first + count, frame.size()); i += step) {
        values.push_back(static_cast<float>(frame[i]));
    }
    std::vector<float> copy = values;
    const float median = statistics::Median(copy);
    const float deviation = std::max(statistics::DeviationAround(median, values), 1.0F) * shrink;
    return {median - (kBelow * deviation), median + (kAbove * deviation)};
}

/// `scale` moved so that the median of `other` gets the grey of its own: the levels that are subtracted make
/// a picture darker, but only their pattern is of interest.
GreyScale MovedTo(const GreyScale& other, const GreyScale& scale) {
    constexpr float share = kBelow / (kBelow + kAbove);
    const float range = scale.white - scale.black;
    const float black = other.black + (share * (other.white - other.black)) - (share * range);
    return {black, black + range};
}

/// The exposure at the highest ISO speed, which shows the stripes best.
std::size_t BestDark(const Calibration& calibration) {
    const auto& exposures = calibration.darks().exposures();
    return static_cast<std::size_t>(std::ranges::max_element(exposures, {}, &DarkExposure::gain) -
                                    exposures.begin());
}

std::string KindAndPlace(const Defect& defect) {
    return "Column " + std::to_string(defect.column) + ", rows " + std::to_string(defect.first_row) + " to " +
           std::to_string(defect.end_row - 1) + (defect.doubtful ? " (doubtful)" : "");
}

/// The first row of the crop: around the start of the defect if that is inside the frame, else around its
/// end.
int FirstRowToShow(const Defect& defect) {
    const int edge = defect.first_row > 0 || defect.end_row == kRows ? defect.first_row : defect.end_row;
    return std::clamp(edge - (kCropHeight / 2), 0, kRows - kCropHeight);
}

void ShowDefects(Exposure& exposure, bool in_light, const Calibration& calibration, PictureWriter& writer,
                 ReportContents& contents) {
    std::vector<std::vector<GreyPicture>> crops;
    std::vector<const Defect*> shown;
    std::vector<GreyScale> scales;
    const auto scale_of = [](const std::vector<Pixel>& frame, const Defect& defect) {
        return ScaleOf(frame, static_cast<std::size_t>(FirstRowToShow(defect)) * kColumns,
                       std::size_t{kCropHeight} * kColumns, 1);
    };
    for (const Defect& defect : calibration.defects()) {
        if (ShowsInLight(defect.kind) == in_light) {
            shown.push_back(&defect);
            scales.push_back(scale_of(exposure.recorded(), defect));
            crops.emplace_back();
        }
    }
    const auto add = [&](const std::vector<Pixel>& frame) {
        for (std::size_t i = 0; i < shown.size(); ++i) {
            crops[i].push_back(Enlarged(frame, shown[i]->column - (kCropWidth / 2), FirstRowToShow(*shown[i]),
                                        kCropWidth, kCropHeight, kEnlargement, scales[i]));
        }
    };
    add(exposure.recorded());
    add(exposure.Marked());
    const auto& repaired = exposure.Repaired();
    for (std::size_t i = 0; i < shown.size(); ++i) {
        scales[i] = MovedTo(scale_of(repaired, *shown[i]), scales[i]);
    }
    add(repaired);
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const std::string file =
            "defect-" + std::to_string(shown[i]->column) + "-" + std::to_string(shown[i]->first_row) + ".png";
        if (writer.WritePng(file, SideBySide(crops[i]))) {
            contents.defects.push_back({file, KindAndPlace(*shown[i])});
        }
    }
}

void ShowDark(Exposure& exposure, const std::string& name, PictureWriter& writer, ReportContents& contents) {
    // The average of 16 pixels has a quarter of their noise.
    const GreyScale scale = ScaleOf(exposure.recorded(), 0, exposure.recorded().size(), 0.5F);
    if (writer.WritePng("dark-before.png", Reduced(exposure.recorded(), kReduction, scale))) {
        contents.exposures.push_back({"dark-before.png", name + ", brightened, as recorded"});
    }
    const auto& repaired = exposure.Repaired();
    const GreyScale corrected = MovedTo(ScaleOf(repaired, 0, repaired.size(), 0.5F), scale);
    if (writer.WritePng("dark-after.png", Reduced(repaired, kReduction, corrected))) {
        contents.exposures.push_back({"dark-after.png", name + ", equally brightened, corrected"});
    }
}

std::string WritePage(const std::string& path, const std::string& page) {
    ReplacementFile file;
    std::error_code error = file.Open(path, ReplacementFile::Existing::kReplaceTarget);
    if (!error) {
        file.Write(page);
        error = file.Commit(page.size());
    }
    return error ? system_error::Text(error) : "";
}

/// Whether the file at `path`, which may be absent, is one that a report may replace. One that cannot be read
/// is not.
bool IsReportOrAbsent(const std::string& path) {
    std::string text;
    return database_file::Read(path, text).empty() &&
           (text.empty() || text.find(kReportMark) != std::string::npos);
}

}  // namespace

std::string WriteReport(const std::string& folder, const std::string& command, Measuring& measuring) {
    const Calibration& calibration = measuring.calibration();
    ReportContents contents = {.serial = static_cast<int>(measuring.serial()),
                               .command = command,
                               .left_out = measuring.left_out(),
                               .exposures = {},
                               .plots = {},
                               .defects = {},
                               .missing = ""};
    std::error_code error;
    std::filesystem::create_directories(system_path::ToSystem(folder), error);
    if (error) {
        return error.message();
    }
    const std::string prefix = path_names::WithSeparator(folder);
    if (!IsReportOrAbsent(prefix + "index.html")) {
        return "index.html there is not a report of velmarcon-calibrate; name another folder";
    }
    PictureWriter writer(prefix);
    progress::Show("Making the pictures");
    if (writer.WriteLevelPlot("levels.svg", calibration.levels().above_darkest)) {
        contents.plots.push_back({"levels.svg", "Dark level of each column above the darkest one"});
    }
    if (contents.plots.empty()) {
        contents.missing = "There are no pictures: gnuplot is not installed, or has failed.";
    } else {
        const std::size_t best = BestDark(calibration);
        if (measuring.loader().Load(measuring.darks()[best]) == 0) {
            Exposure exposure(measuring.serial(), measuring.loader().iso(), measuring.loader().frame(),
                              calibration);
            ShowDark(exposure, calibration.darks().exposures()[best].name, writer, contents);
            ShowDefects(exposure, false, calibration, writer, contents);
        }
        if (!measuring.flats().empty() && measuring.loader().Load(measuring.flats().front()) == 0) {
            Exposure exposure(measuring.serial(), measuring.loader().iso(), measuring.loader().frame(),
                              calibration);
            ShowDefects(exposure, true, calibration, writer, contents);
        }
    }
    progress::Clear();
    if (!contents.missing.empty()) {
        std::printf("%s\n", contents.missing.c_str());
    }
    return WritePage(prefix + "index.html", ReportPage(contents, calibration));
}
