// SPDX-License-Identifier: MIT
// Subtracts the sensor's dark levels, column by column.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/pixel.h"
#include "sensor/dither.h"
#include "sensor/iso_gain.h"
#include "sensor/row_offsets.h"
#include "sensor/sensdb.h"
#include "sensor/sensor_frame.h"
#include "sensor/sensorfixtools.h"
#include "sensor/split_levels.h"
#include "sensor/wrapping_subtraction.h"
#include "sensor/zero_if_out_of_range.h"

namespace {

/// The levels for an image of `width` columns, scaled by `gain`; none if that is not the width of a frame or
/// if there are too few levels.
std::vector<float> FrameLevels(std::span<const float> correction, int width, float gain) {
    using namespace sensor_frame;
    const std::size_t first = width == kCroppedWidth ? kCroppedLevelColumn : 0;
    const auto columns = static_cast<std::size_t>(width);
    if ((width != kFullWidth && width != kCroppedWidth) || correction.size() < first + columns) {
        return {};
    }
    std::vector<float> levels(columns);
    std::ranges::transform(correction.subspan(first, columns), levels.begin(),
                           [gain](float level) { return ZeroIfOutOfRange(level * gain); });
    return levels;
}

/// Subtracts from each pixel of a row the whole part of its level plus its random number; only the low 16
/// bits of that count. Uses bare pointers: checking each index would double the time.
void SubtractDithered(std::span<Pixel> row, const float* levels, const float* random) {
    Pixel* const pixels = row.data();
    for (std::size_t x = 0; x < row.size(); ++x) {
        const auto level = static_cast<std::uint16_t>(static_cast<std::int32_t>(levels[x] + random[x]));
        pixels[x] = static_cast<Pixel>(pixels[x] - std::min(pixels[x], level));
    }
}

/// For levels that no dark reference contains: negative ones, and those beyond 16 bits.
void SubtractAnyLevels(std::span<Pixel> pixels, std::span<const float> levels, Dither& dither) {
    std::vector<float> random((levels.size() + Dither::kLanes - 1) / Dither::kLanes * Dither::kLanes);
    while (!pixels.empty()) {
        const auto row = pixels.first(std::min(levels.size(), pixels.size()));
        dither.Fill(random);
        SubtractDithered(row, levels.data(), random.data());
        pixels = pixels.subspan(row.size());
    }
}

/// Dithers the fractions of the levels, which rounding would turn into banding.
void SubtractColumnLevels(std::span<Pixel> pixels, std::span<const float> levels) {
    Dither dither;
    if (const auto split = SplitLevels::Of(levels)) {
        split->SubtractFrom(pixels, dither);
    } else {
        SubtractAnyLevels(pixels, levels, dither);
    }
}

/// Subtracts column levels and row offsets together. The right half gets its offsets in reverse row order,
/// because it is read out in that order; column x gets level x in either frame.
void SubtractWithRowOffsets(std::span<Pixel> pixels, std::span<const float> correction, int width, int height,
                            float gain) {
    const auto columns = static_cast<std::size_t>(width);
    const auto rows = static_cast<std::size_t>(height);
    if (correction.size() < columns) {
        return;
    }
    const RowOffsets offsets = EstimateRowOffsets(pixels, width, height);
    const std::size_t half = columns / 2;
    for (std::size_t y = 0; y < rows; ++y) {
        const auto row = pixels.subspan(y * columns, columns);
        SubtractWrapping(row.first(half), correction, offsets.left[y], gain);
        SubtractWrapping(row.subspan(half), correction.subspan(half), offsets.right[rows - 1 - y], gain);
    }
}

}  // namespace

int sensorfixtools::fixBlackLevels(unsigned int serial, std::vector<Pixel>* pixels, std::uint16_t iso,
                                   int width, int height, int count, sensdb* db, bool estimate) {
    const std::vector<float> correction = db->Camera(serial).LevelCorrection;
    const auto gain = static_cast<float>(IsoGain(iso));
    const auto image = std::span(*pixels).first(static_cast<std::size_t>(count));
    if (estimate) {
        SubtractWithRowOffsets(image, correction, width, height, gain);
        return 0;
    }
    if (const auto levels = FrameLevels(correction, width, gain); !levels.empty()) {
        SubtractColumnLevels(image, levels);
    }
    return 0;
}
