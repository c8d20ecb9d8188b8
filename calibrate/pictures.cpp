// SPDX-License-Identifier: MIT
#include "calibrate/pictures.h"

#include <algorithm>
#include <cmath>

#include "base/pixel.h"
#include "calibrate/number_text.h"
#include "calibrate/sensor_grid.h"
#include "system/file_system.h"
#include "system/path_names.h"
#include "system/replacement_file.h"
#include "system/run_tool.h"

namespace {

using sensor_grid::kColumns;
using sensor_grid::kRows;

using path_names::kReportData;
using path_names::kReportPart;
using path_names::kReportScript;

bool WriteWhole(const std::string& path, const std::string& bytes) {
    ReplacementFile file;
    if (file.Open(path, ReplacementFile::Existing::kReplace)) {
        return false;
    }
    file.Write(bytes);
    return !file.Commit(bytes.size());
}

std::size_t PixelIndex(int column, int row) {
    return (static_cast<std::size_t>(row) * kColumns) + static_cast<std::size_t>(column);
}

}  // namespace

std::uint8_t GreyScale::Grey(float value) const {
    constexpr float most = 255;
    const float share = std::clamp((value - black) / std::max(white - black, 1.0F), 0.0F, 1.0F);
    return static_cast<std::uint8_t>(std::lround(most * share));
}

GreyPicture Reduced(std::span<const Pixel> frame, int reduction, const GreyScale& scale) {
    GreyPicture picture = {.width = kColumns / reduction, .height = kRows / reduction, .pixels = {}};
    const auto count = static_cast<float>(reduction * reduction);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            float sum = 0;
            for (int i = 0; i < reduction * reduction; ++i) {
                sum += static_cast<float>(
                    frame[PixelIndex((x * reduction) + (i % reduction), (y * reduction) + (i / reduction))]);
            }
            picture.pixels.push_back(scale.Grey(sum / count));
        }
    }
    return picture;
}

GreyPicture Enlarged(std::span<const Pixel> frame, int column, int row, int width, int height,
                     int enlargement, const GreyScale& scale) {
    GreyPicture picture = {.width = width * enlargement, .height = height * enlargement, .pixels = {}};
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const int from_x = column + (x / enlargement);
            const int from_y = row + (y / enlargement);
            const bool inside = from_x >= 0 && from_x < kColumns && from_y >= 0 && from_y < kRows;
            const auto value = inside ? static_cast<float>(frame[PixelIndex(from_x, from_y)]) : scale.black;
            picture.pixels.push_back(scale.Grey(value));
        }
    }
    return picture;
}

GreyPicture SideBySide(std::span<const GreyPicture> pictures) {
    constexpr int gap = 9;
    constexpr std::uint8_t white = 255;
    GreyPicture joined;
    if (pictures.empty()) {
        return joined;
    }
    joined.height = pictures.front().height;
    for (const GreyPicture& picture : pictures) {
        joined.width += picture.width + (&picture == &pictures.back() ? 0 : gap);
    }
    for (int y = 0; y < joined.height; ++y) {
        for (const GreyPicture& picture : pictures) {
            const auto first = picture.pixels.begin() + (static_cast<std::ptrdiff_t>(y) * picture.width);
            joined.pixels.insert(joined.pixels.end(), first, first + picture.width);
            if (&picture != &pictures.back()) {
                joined.pixels.insert(joined.pixels.end(), gap, white);
            }
        }
    }
    return joined;
}

/// gnuplot runs in the folder, so that no path has to be quoted. Its output gets its final name when it is
/// complete.
bool PictureWriter::RunScript(const std::string& script, const std::string& data, const std::string& name) {
    const bool done = WriteWhole(folder_ + kReportData, data) &&
                      WriteWhole(folder_ + kReportScript, script) &&
                      RunTool(folder_, "gnuplot", {kReportScript}) &&
                      !file_system::Rename(folder_ + kReportPart, folder_ + name);
    for (const char* const file : {kReportData, kReportScript, kReportPart}) {
        file_system::Remove(folder_ + file);
    }
    return done;
}

bool PictureWriter::WritePng(const std::string& name, const GreyPicture& picture) {
    // With this border gnuplot maps each value to one pixel. Drawn as rectangles ("with image pixels"),
    // values would mix with the white ground at their edges, by an amount that changes across the picture.
    constexpr int border = 1;
    const std::string width = std::to_string(picture.width);
    const std::string height = std::to_string(picture.height);
    const std::string script =
        "set terminal pngcairo size " + std::to_string(picture.width + (2 * border)) + "," +
        std::to_string(picture.height + (2 * border)) + "\nset output '" + kReportPart +
        "'\nset margins 0,0,0,0\nunset border\nunset tics\nunset key\nunset colorbox\n"
        "set palette gray\nset palette gamma 1\nset cbrange [0:255]\nset xrange [-0.5:" +
        width + "-0.5]\nset yrange [" + height + "-0.5:-0.5]\nplot '" + kReportData + "' binary array=(" +
        width + "," + height + ") format='%uchar' with image\nset output\n";
    return RunScript(script, std::string(picture.pixels.begin(), picture.pixels.end()), name);
}

bool PictureWriter::WriteLevelPlot(const std::string& name, std::span<const float> levels) {
    constexpr int decimals = 4;
    std::string data;
    for (const float level : levels) {
        data += Fixed(level, decimals) + "\n";
    }
    const std::string script =
        std::string("set terminal svg size 1000,360 dynamic font 'sans-serif,14' background ") +
        "'white'\nset output '" + kReportPart +
        "'\nunset key\nset grid\nset xrange [0:3967]\nset yrange [0:*]\n"
        "set xlabel 'Column'\nset ylabel 'Dark level, raw units at ISO 160'\nplot '" +
        kReportData + "' with lines lc rgb '#20608f'\nset output\n";
    return RunScript(script, data, name);
}
