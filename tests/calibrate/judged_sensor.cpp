// SPDX-License-Identifier: MIT
#include "tests/calibrate/judged_sensor.h"

#include <algorithm>
#include <cmath>

namespace calibrate_tests {

namespace {

constexpr int kNear = 24;     // rows
constexpr double kGain = 16;  // at ISO 2500

std::string Text(int column, int first_row, int end_row) {
    return "column " + std::to_string(column) + ", rows " + std::to_string(first_row) + " to " +
           std::to_string(end_row);
}

/// The number of rows of `defect` that are listed.
int ListedRowsOf(const samples::SimulatedDefect& defect, const std::vector<Defect>& found) {
    int rows = 0;
    for (const Defect& run : found) {
        if (run.column == defect.column && !run.doubtful) {
            rows += std::max(
                0, std::min(run.end_row, defect.end_row) - std::max(run.first_row, defect.first_row));
        }
    }
    return rows;
}

bool LiesAt(const Defect& run, const std::vector<samples::SimulatedDefect>& defects) {
    for (int row = run.first_row; row < run.end_row; ++row) {
        const bool near = std::ranges::any_of(defects, [&](const samples::SimulatedDefect& defect) {
            return defect.column == run.column && row >= defect.first_row - kNear &&
                   row < defect.end_row + kNear;
        });
        if (!near) {
            return false;
        }
    }
    return true;
}

/// `defects` are the sensor's true defects; for a sound sensor there are none, because its raised columns do
/// not count as defects.
void JudgeDefects(const std::vector<samples::SimulatedDefect>& defects, const std::vector<Defect>& found,
                  Judgement& judgement) {
    constexpr double enough = 0.9;
    for (const samples::SimulatedDefect& defect : defects) {
        if (ListedRowsOf(defect, found) < enough * (defect.end_row - defect.first_row)) {
            judgement.missed.push_back(Text(defect.column, defect.first_row, defect.end_row));
        }
    }
    for (const Defect& run : found) {
        const std::string text = Text(run.column, run.first_row, run.end_row);
        if (run.doubtful) {
            judgement.doubtful.push_back(text);
        } else if (!LiesAt(run, defects)) {
            judgement.false_finds.push_back(text);
        }
    }
}

/// Standard deviation of the levels from the true ones, at ISO 160, over columns without defects.
double LevelError(const samples::SimulatedSensor& sensor, const std::vector<float>& levels) {
    const std::vector<float> truth = samples::ColumnDarkLevels(sensor);
    double sum = 0;
    double squares = 0;
    double count = 0;
    for (int x = 0; x < samples::kSensorWidth; ++x) {
        const bool defective = std::ranges::any_of(
            sensor.defects, [&](const samples::SimulatedDefect& defect) { return defect.column == x; });
        if (!defective) {
            const auto error =
                static_cast<double>(levels[static_cast<std::size_t>(x)] - truth[static_cast<std::size_t>(x)]);
            sum += error;
            squares += error * error;
            ++count;
        }
    }
    return std::sqrt((squares / count) - ((sum / count) * (sum / count)));
}

}  // namespace

Judgement Judge(const samples::SimulatedSensor& sensor, const ExposureCounts& counts) {
    constexpr std::uint64_t seeds_of_a_sensor = 1000;
    Calibration calibration;
    Judgement judgement;
    samples::SimulatedExposure exposure;
    exposure.seed = sensor.seed * seeds_of_a_sensor;
    for (int i = 0; i < counts.low + counts.high; ++i) {
        exposure.iso = i < counts.low ? 160 : 2500;
        ++exposure.seed;
        const auto pixels = samples::ExposePixels(sensor, exposure);
        const std::string left_out =
            calibration.AddDark({.name = std::to_string(i), .iso = exposure.iso, .pixels = pixels});
        if (!left_out.empty()) {
            judgement.false_finds.push_back(left_out);
        }
    }
    calibration.Search();
    exposure.iso = 160;
    for (int i = 0; i < counts.flat; ++i) {
        ++exposure.seed;
        exposure.light = i % 2 == 0 ? 0.3F : 0.5F;
        exposure.edge_column = sensor.seed % 2 == 0 ? 0 : 1500;
        const auto pixels = samples::ExposePixels(sensor, exposure);
        const std::string left_out =
            calibration.AddFlat({.name = std::to_string(i), .iso = exposure.iso, .pixels = pixels});
        if (!left_out.empty()) {
            judgement.false_finds.push_back(left_out);
        }
    }
    calibration.Finish(false);

    const bool sound = std::ranges::all_of(sensor.defects, [](const samples::SimulatedDefect& defect) {
        return defect.answer == 1 && !defect.stuck && defect.dark < 5 &&
               defect.end_row - defect.first_row == samples::kSensorHeight;
    });
    const auto defects = sound ? std::vector<samples::SimulatedDefect>() : sensor.defects;
    judgement.defects = static_cast<int>(defects.size());
    JudgeDefects(defects, calibration.defects(), judgement);

    constexpr double rounding = 1.0 / 12;  // variance of rounding to whole numbers
    const double low =
        (static_cast<double>(sensor.read_noise) * static_cast<double>(sensor.read_noise)) + rounding;
    const double high = (low - rounding) * kGain + rounding;
    const double weight = (counts.low / low) + (counts.high * kGain * kGain / high);
    const double own = high / samples::kSensorHeight;
    const double error = kGain * LevelError(sensor, calibration.levels().absolute);
    judgement.stripes = std::sqrt(own + (error * error));
    judgement.optimum = std::sqrt(own + (kGain * kGain / weight / samples::kSensorHeight));
    return judgement;
}

}  // namespace calibrate_tests
