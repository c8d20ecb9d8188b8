// SPDX-License-Identifier: MIT
#ifndef VELMARCON_SAMPLES_SENSOR_DUMP_H
#define VELMARCON_SAMPLES_SENSOR_DUMP_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "samples/scene.h"

namespace samples {

constexpr int kSensorWidth = 3968;         ///< pixels
constexpr int kSensorHeight = 2646;        ///< rows
constexpr std::size_t kLeadingWords = 54;  ///< words before the first row
constexpr std::size_t kRowWords = 3976;    ///< words of one row: the pixels and 8 trailing words
constexpr std::size_t kDumpWords = kLeadingWords + (kRowWords * kSensorHeight);
constexpr std::size_t kDumpBytes = 2 * kDumpWords;  ///< 21041100
constexpr std::uint16_t kSensorWhite = 16383;       ///< largest 14-bit value

constexpr int kCroppedWidth = 3920;   ///< pixels of the raw image in a DNG that the camera wrote
constexpr int kCroppedHeight = 2638;  ///< rows
constexpr int kCropLeft = 24;         ///< columns of the sensor before the first one of the cropped image
constexpr int kCropTop = 4;           ///< rows of the sensor above the first one of the cropped image

/// Index of pixel (x, y) in the words of a dump.
constexpr std::size_t WordIndex(int x, int y) {
    return kLeadingWords + (kRowWords * static_cast<std::size_t>(y)) + static_cast<std::size_t>(x);
}

/// A defect: a part of one column, rows `first_row` to `end_row` - 1, that reads wrong.
struct ColumnDefect {
    int column = 0;
    int first_row = 0;
    int end_row = kSensorHeight;
    float level = 0;  ///< the value it reads regardless of the light, in raw units
    /// For a weak defect: it still sees the light, and reads `level` too much at ISO 160.
    bool adds = false;
};

/// The sensor's contribution to the picture. Levels are in raw units at ISO 160 and grow with the ISO gain.
struct SensorOptions {
    std::uint16_t iso = 160;   ///< gain 1; 320, 640, 1250 and 2500 give 2, 4, 8 and 16, anything else 1
    bool noise = true;         ///< photon noise and read noise
    std::uint64_t seed = 1;    ///< seed of the noise; the same seed gives the same words on every machine
    float read_noise = 2.5F;   ///< standard deviation
    float photon_gain = 0.3F;  ///< raw units per electron: the variance of a signal is this times the signal
    float dark_level = 92;
    /// Largest deviation of the columns' levels from `dark_level`; 0: all columns equal.
    float column_pattern = 3;
    /// Seed of the column pattern, which belongs to the camera, not to the exposure.
    std::uint64_t column_seed = 3106091;
    /// A column that is hot from row 700 on and a dead one. Then two weak defects, the most common kind: a
    /// column that is warm from row 1250 on and one that reads too little down to row 1800.
    std::vector<ColumnDefect> defects = {{1203, 700, kSensorHeight, 9019},
                                         {2750, 0, kSensorHeight, 92},
                                         {618, 1250, kSensorHeight, 48, true},
                                         {3310, 0, 1800, -40, true}};
    std::vector<float> left_row_offsets = {};   ///< added to the left half of row i; empty: none
    std::vector<float> right_row_offsets = {};  ///< added to the right half of row i
};

/// 1, 2, 4, 8 or 16; see SensorOptions::iso.
int IsoGain(std::uint16_t iso);

/// The light on every pixel of the sensor (kSensorWidth x kSensorHeight, row by row) in raw units, without
/// dark level: the scene in daylight through the camera's colour filters, red at (0, 0). White is three
/// quarters of the range.
std::vector<float> ExposeSensor(const Scene& scene);

/// The dark level of every column, without the defects, in raw units at `options.iso`.
std::vector<float> ColumnDarkLevels(const SensorOptions& options);

/// The words of a `.RAW` dump of `light` (see ExposeSensor). An empty `light` gives a dark frame, as in a
/// `.BIA` file.
std::vector<std::uint16_t> Words(std::span<const float> light, const SensorOptions& options);
std::vector<std::uint16_t> DarkWords(const SensorOptions& options);

/// A dump in which every image pixel is `value`, for tests. Leading and trailing words are 0xAAAA.
std::vector<std::uint16_t> FlatWords(std::uint16_t value);

/// The bytes of a dump file: the words, low byte first.
std::vector<std::uint8_t> DumpBytes(std::span<const std::uint16_t> words);

/// The table through which the camera stores 8-bit pixels: entry i is floor(i * i / 4).
std::array<std::uint16_t, 256> LinearizationTable();

/// kCroppedWidth x kCroppedHeight pixels of `words` as the camera stores them in its own DNGs: for each pixel
/// the smallest index whose table entry is nearest to the sensor value.
std::vector<std::uint8_t> CroppedBytes(std::span<const std::uint16_t> words);

}  // namespace samples

#endif  // VELMARCON_SAMPLES_SENSOR_DUMP_H
